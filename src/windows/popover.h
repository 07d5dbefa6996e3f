#pragma once

#include "windows/card_window.h"

#include <QPointer>

class QVBoxLayout;

namespace nivora {

// A small window of the panel's, opened at one of its controls. It has the
// keyboard while it is open, so that input methods work in it.
class Popover : public CardWindow
{
    Q_OBJECT

public:
    // `panel`: a widget of the panel.
    Popover(platform::WindowSystem &windowSystem, const QString &title, QWidget *panel);

    // Opens beside this control and gives the keyboard to `first`. Where there
    // is room it opens below.
    // While it is open it follows the control.
    void openAt(QWidget &control, QWidget &first);

protected:
    QVBoxLayout &column() { return *m_column; }
    // What Return does, with Control or without, where the control with the focus
    // has no use for it.
    virtual void confirm() = 0;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void follow();
    QRect place();
    int contentHeight() const;

    platform::WindowSystem &m_windowSystem;
    QVBoxLayout *m_column;
    QPointer<QWidget> m_control;
    QRect m_area;         // where it may be; empty without a screen
    bool m_above = false; // its lower edge is the one at the control
};

} // namespace nivora
