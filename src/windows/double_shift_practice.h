#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>

#include <optional>

class QKeyEvent;

namespace nivora {

// Waits for the user to press Shift twice, left or right, in a window of ours. It
// needs no permission and none of the program's triggers.
class DoubleShiftPractice : public QObject
{
    Q_OBJECT

public:
    explicit DoubleShiftPractice(QObject *parent);

    // Sees the keys of this window from now on. No effect when it does already.
    void installShiftMonitor(QWindow &window);
    void removeShiftMonitor();

Q_SIGNALS:
    // After which it no longer waits.
    void completed();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void handleShift(const QKeyEvent &event);

    QPointer<QWindow> m_window;           // whose keys are seen
    std::optional<quint64> m_lastShiftAt; // in milliseconds of the window system's clock
};

} // namespace nivora
