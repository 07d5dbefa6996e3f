#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

class QGuiApplication;

namespace nivora::linuxdesktop {

// Gives the memory that the heaps hold and nobody uses back to the system, once none of
// the program's windows has had the keyboard for a while: what a long text took is not
// kept until the next one. Takes some milliseconds of the main thread, while nobody
// waits for it.
class HeapTrimmer : public QObject
{
    Q_OBJECT

public:
    // A little longer than the history keeps its rows after its window has closed.
    static constexpr std::chrono::seconds usualRest{70};

    explicit HeapTrimmer(QGuiApplication &application, std::chrono::milliseconds rest = usualRest);

private:
    QTimer m_rest;
};

} // namespace nivora::linuxdesktop
