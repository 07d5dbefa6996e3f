#pragma once

#include <QTableView>

class QSortFilterProxyModel;

namespace nivora {

class GlossaryModel;
class GlossaryStore;

// The terms as rows of fields: edited in place, deleted by their bins or by the
// Delete key, copied and pasted as pairs.
class GlossaryTable : public QTableView
{
    Q_OBJECT

public:
    // `store` outlives the table.
    GlossaryTable(GlossaryStore &store, QWidget *parent);

    // Shows the terms with this text in either form; all for an empty one.
    void setFilter(const QString &text);
    // Appends a term and lets the user write into it.
    void addTerm();

Q_SIGNALS:
    // Pairs came from the clipboard: so many new ones.
    void pasted(int count);
    // The keyboard is at work in the table and needs to see it.
    void keyboardUsed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isBinAt(const QPoint &place) const;
    void removeSelected();
    void copySelected() const;
    void paste();
    QList<int> selectedRows() const;

    GlossaryStore &m_store;
    GlossaryModel *m_model;
    QSortFilterProxyModel *m_filter;
    QPersistentModelIndex m_pressedBin;
};

} // namespace nivora
