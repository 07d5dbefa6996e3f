#pragma once

#include <QWidget>

#include <functional>

namespace nivora {

// The panel's window: frameless, above the others, in no task list.
class FloatingPanel : public QWidget
{
    Q_OBJECT

public:
    explicit FloatingPanel(QWidget *parent = nullptr);

    // Whether the desktop blends windows: corners are round then, and square
    // otherwise, where what is transparent would show black.
    void setBlended(bool blended);

Q_SIGNALS:
    void cancelled(); // Esc
    void resignedKey();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_blended = false;
};

} // namespace nivora
