#pragma once

#include <QRect>
#include <QWidget>

namespace nivora {

namespace platform {
class WindowSystem;
}

// A frameless window: a rounded card with a soft shadow where the desktop blends
// windows, a plain rectangle where it does not. The shadow lies within the window,
// around the card.
class CardWindow : public QWidget
{
    Q_OBJECT

public:
    // `windowSystem` outlives the window. With a parent, it stays above that. By
    // its kind it is above all others and in no task list.
    CardWindow(platform::WindowSystem &windowSystem, const QString &role, QWidget *parent,
               Qt::WindowFlags kind = Qt::Tool | Qt::WindowStaysOnTopHint);

    // Where the card is, without its shadow, in logical pixels of the screen.
    QRect card() const;
    void setCard(const QRect &card);

    // Shows the window there and asks for the keyboard.
    void present(const QRect &card);

Q_SIGNALS:
    void cancelled(); // Esc

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();
    void insistOnKeyboard();

    platform::WindowSystem &m_windowSystem;
    int m_margin = 0;
    bool m_presenting = false;    // shown, but not painted yet
    bool m_wantsKeyboard = false; // shown, and never had it since
};

} // namespace nivora
