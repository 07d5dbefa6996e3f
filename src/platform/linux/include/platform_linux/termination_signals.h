#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace nivora::linuxdesktop {

// Turns SIGTERM and SIGINT into a signal of the event loop, so that the program
// ends in order and its writes are finished. A second one, while it is ending,
// ends it at once. One object for a process, made when there is an application.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    int m_descriptor; // an eventfd
    QSocketNotifier m_notifier;
};

} // namespace nivora::linuxdesktop
