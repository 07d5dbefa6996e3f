#pragma once

#include <QWidget>

#include <optional>

namespace nivora {

class ComposeInput;
class PanelFooter;
class PanelHeader;
class ResultArea;
class TranslationViewModel;

namespace platform {
class WindowSystem;
}

// What the floating panel shows: one column of fixed width that renders the
// session and calls its operations.
class TranslationPanelView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int panelWidth = 360; // logical pixels

    // What is borrowed outlives the view.
    TranslationPanelView(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                         QWidget *parent = nullptr);

    // Begins afresh, as at each showing of the panel.
    void reset();

    // Height of the whole content at the panel's width, in logical pixels.
    int contentHeight() const;

    // Closes what is open beside the panel.
    void closePopovers();

Q_SIGNALS:
    void contentHeightChanged(int height);
    void closeRequested();
    void replyRequested();
    // The pointer drags the panel: so far it has moved by this much. The last one
    // of a drag, and no other, `ends` it.
    void dragged(const QPoint &offset, bool ends);

protected:
    bool event(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void renderMode();
    void focusWhereWorkGoesOn(Qt::FocusReason reason);

    TranslationViewModel &m_session;
    PanelHeader *m_header;
    QWidget *m_composeDivider;
    ComposeInput *m_compose;
    QWidget *m_resultDivider;
    ResultArea *m_result;
    PanelFooter *m_footer;
    int m_reportedHeight = 0;
    std::optional<QPoint> m_dragStart; // the pointer, while the panel is dragged
};

} // namespace nivora
