#pragma once

#include <QList>
#include <QWidget>

class QVBoxLayout;

namespace nivora {

// Rows on a ground of their own with hairlines between them. Rows may be hidden.
class SettingsCard : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsCard(QWidget *parent);

    // What lies over the window's own colour.
    static QColor tint(const QPalette &palette);

    // Without a hairline above it the row belongs to the one before.
    void addRow(QWidget *row, bool hasLine);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QVBoxLayout *m_column;
    QList<QWidget *> m_lined;
};

} // namespace nivora
