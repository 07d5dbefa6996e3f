#include "platform_linux/heap_trimmer.h"

#include <QGuiApplication>
#include <QWindow>

#include <malloc.h>

namespace nivora::linuxdesktop {

HeapTrimmer::HeapTrimmer(QGuiApplication &application, std::chrono::milliseconds rest)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(rest);
    connect(&m_rest, &QTimer::timeout, this, [] {
#ifdef __GLIBC__ // other C libraries do it by themselves
        malloc_trim(0);
#endif
    });
    connect(&application, &QGuiApplication::focusWindowChanged, this, [this](QWindow *window) {
        if (window)
            m_rest.stop();
        else
            m_rest.start();
    });
}

} // namespace nivora::linuxdesktop
