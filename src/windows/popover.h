#pragma once

#include "windows/card_window.h"

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
    void openAt(const QWidget &control, QWidget &first);

protected:
    QVBoxLayout &column() { return *m_column; }
    // What Return does, with Control or without, where the control with the focus
    // has no use for it.
    virtual void confirm() = 0;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fitHeight();
    int contentHeight() const;

    platform::WindowSystem &m_windowSystem;
    QVBoxLayout *m_column;
    bool m_above = false; // its lower edge is the one at the control
};

} // namespace nivora
