#include "platform_linux/termination_signals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace nivora::linuxdesktop {

namespace {

// A signal handler is given nothing but the signal's number.
std::atomic<int> handlerDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void onTerminationSignal(int)
{
    const int savedError = errno;
    const uint64_t one = 1;
    // There is nothing to be done about a failure here.
    [[maybe_unused]] const auto written = write(handlerDescriptor, &one, sizeof one);
    errno = savedError;
}

void setHandlers(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int signal : {SIGTERM, SIGINT})
        sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals()
    : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_notifier(m_descriptor, QSocketNotifier::Read)
{
    handlerDescriptor = m_descriptor;
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier.setEnabled(false);
        Q_EMIT received();
    });
    // The first signal puts the default action back.
    setHandlers(&onTerminationSignal, SA_RESTART | int(SA_RESETHAND));
}

TerminationSignals::~TerminationSignals()
{
    setHandlers(SIG_DFL, 0);
    handlerDescriptor = -1;
    m_notifier.setEnabled(false);
    close(m_descriptor);
}

} // namespace nivora::linuxdesktop
