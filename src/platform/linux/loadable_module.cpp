#include "loadable_module.h"

#include "platform/log.h"

#include <QFile>
#include <QPromise>
#include <QThreadPool>

#include <dlfcn.h>

namespace nivora::linuxdesktop {

LoadableModule::LoadableModule(const QString &file, const char *purpose)
    : m_library(file)
    , m_purpose(purpose)
{
    // Threads of what it uses may outlive it.
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

void LoadableModule::prepare()
{
    if (m_loading.isValid())
        return;
    const auto promise = std::make_shared<QPromise<bool>>();
    m_loading = promise->future();
    promise->start();
    // The loader knows it from there on, and never lets it go.
    QThreadPool::globalInstance()->start([promise, file = QFile::encodeName(m_library.fileName())] {
        ::dlopen(file.constData(), RTLD_LAZY | RTLD_NODELETE);
        promise->addResult(true);
        promise->finish();
    });
}

platform::Task LoadableModule::load(std::function<void()> done)
{
    prepare();
    return platform::whenFinished<bool>(m_loading, [done = std::move(done)](bool) { done(); });
}

QFunctionPointer LoadableModule::symbol(const char *name)
{
    const QFunctionPointer found = m_library.resolve(name);
    if (!found)
        qCWarning(log::app).noquote() << "No" << m_purpose << "module:" << m_library.errorString();
    return found;
}

} // namespace nivora::linuxdesktop
