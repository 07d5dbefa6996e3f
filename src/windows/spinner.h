#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace nivora {

// A small ring that turns while it is on show, unless the user wants no motion.
// Costs nothing while it is hidden.
class Spinner : public QWidget
{
    Q_OBJECT

public:
    explicit Spinner(int side, QWidget *parent = nullptr); // logical pixels

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer m_timer;
    int m_step = 0;
};

} // namespace nivora
