#pragma once

#include "text_flow.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace nivora {

// Shows a text that grows at its end: selectable, read-only, as high as its text.
// What arrives is laid out at most once a frame.
class FlowingText : public QWidget
{
    Q_OBJECT

public:
    enum class Weight { Main, Annotation };

    explicit FlowingText(Weight weight, QWidget *parent = nullptr);

    void setTextFont(const QFont &font);
    void replaceText(const QString &text);
    void appendText(const QString &piece);

    const QString &text() const { return m_flow.text(); }
    const TextFlow &flow() const { return m_flow; }

    // Of the text laid out in this width, in logical pixels.
    int heightForWidth(int width) const override;

    // Whether whoever holds the text should draw the focus ring around it, where
    // there is room.
    bool showsRing() const { return m_ring && hasFocus(); }

    TextFlow::Range selection() const;
    int cursor() const { return m_cursor; }
    void select(int anchor, int cursor);
    QString selectedText() const;
    void copy() const;

Q_SIGNALS:
    void textHeightChanged();
    // The user moved the end of the selection there.
    void cursorShown(const QRect &place);
    void ringChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void layOut();
    std::optional<int> cursorAfter(const QKeyEvent &event) const;

    Weight m_weight;
    TextFlow m_flow;
    QTimer m_layoutTimer;
    QElapsedTimer m_sinceLayout;
    int m_reportedHeight = 0;
    int m_told = 0; // characters that assistive tools know of
    int m_anchor = 0;
    int m_cursor = 0;
    bool m_selecting = false; // with the pointer
    bool m_ring = false;      // came here by the keyboard
};

} // namespace nivora
