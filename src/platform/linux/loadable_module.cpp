#include "loadable_module.h"

#include "platform/log.h"

#include <QPromise>
#include <QThreadPool>

namespace nivora::linuxdesktop {

namespace {

// The libraries of one file are one, so that an object of another thread will do.
void loadLibrary(const QString &file)
{
    QLibrary library(file);
    library.setLoadHints(QLibrary::PreventUnloadHint);
    library.load();
}

} // namespace

LoadableModule::LoadableModule(const QString &file, const char *purpose)
    : m_library(file)
    , m_purpose(purpose)
{
    // Threads of what it uses may outlive it.
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

platform::Task LoadableModule::load(std::function<void()> done)
{
    if (isLoaded())
        return platform::delay({}, std::move(done));
    const auto promise = std::make_shared<QPromise<bool>>();
    auto task =
        platform::whenFinished<bool>(promise->future(), [done = std::move(done)](bool) { done(); });
    QThreadPool::globalInstance()->start([promise, file = m_library.fileName()] {
        promise->start();
        loadLibrary(file);
        promise->addResult(true);
        promise->finish();
    });
    return task;
}

void LoadableModule::prepare()
{
    if (!isLoaded())
        QThreadPool::globalInstance()->start([file = m_library.fileName()] { loadLibrary(file); });
}

QFunctionPointer LoadableModule::symbol(const char *name)
{
    const QFunctionPointer found = m_library.resolve(name);
    if (!found)
        qCWarning(log::app).noquote() << "No" << m_purpose << "module:" << m_library.errorString();
    return found;
}

} // namespace nivora::linuxdesktop
