#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

namespace nivora {

// A key that shows how it wants to be pressed: twice, then a rest, over and over.
// It keeps still for users who want no motion, and costs nothing while hidden.
class DoubleShiftHint : public QWidget
{
    Q_OBJECT

public:
    enum class Phase { Down1, Up1, Down2, Up2, Rest };

    explicit DoubleShiftHint(QWidget *parent);

    // How far the key is pressed, from 0 to 1, this long after a phase began. A
    // key that springs back shoots a little above its place.
    static double pressure(Phase phase, double seconds);

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void begin(Phase phase);

    Phase m_phase = Phase::Rest;
    QElapsedTimer m_sincePhase;
    QBasicTimer m_timer;
};

} // namespace nivora
