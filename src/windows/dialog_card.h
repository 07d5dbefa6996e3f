#pragma once

#include "windows/card_window.h"

#include <QSize>

namespace nivora {

class PanelButton;

// A card of its own in the middle of the screen, in the task list, which the user
// drags by any place that no control takes. Esc, its close button and the window
// manager all end in cancelled(); what becomes of that is up to the owner.
class DialogCard : public CardWindow
{
    Q_OBJECT

public:
    enum class Level { Normal, Floating }; // Floating: above all other windows

    // `closeHint` names the close button.
    DialogCard(platform::WindowSystem &windowSystem, const QString &role, Level level,
               const QString &closeHint);

    // Owned by the card from now on. `size`: the card's in logical pixels; it grows
    // in height where the content needs more.
    void setContent(QWidget *content, const QSize &size);

    // Opens it in the middle of the screen with the pointer, or brings it to the
    // front where it is.
    void open();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int cardHeight() const;
    void placeCloseButton();

    platform::WindowSystem &m_windowSystem;
    PanelButton *m_closeButton;
    QWidget *m_content = nullptr;
    QSize m_size;
};

} // namespace nivora
