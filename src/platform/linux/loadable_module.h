#pragma once

#include "platform/task.h"

#include <QFuture>
#include <QLibrary>
#include <QString>

#include <functional>

namespace nivora::linuxdesktop {

// A library of the program's own that is loaded at its first use and then stays.
// Main thread only.
class LoadableModule
{
public:
    // `file` has its path and its ending. `purpose` is for the log, where the module
    // cannot be loaded.
    LoadableModule(const QString &file, const char *purpose);

    // Has another thread read it from the disk, once.
    void prepare();

    // Tells when that is over, whether there was something to read or not. Dropping the
    // task does not end it.
    platform::Task load(std::function<void()> done);

    // What the module offers under the name; null where it cannot be loaded. Takes its
    // time where the module has not been loaded.
    template<typename Function>
    Function resolve(const char *name)
    {
        return reinterpret_cast<Function>(symbol(name));
    }

    // Why it could not be loaded.
    QString errorString() const { return m_library.errorString(); }

private:
    QFunctionPointer symbol(const char *name);

    QLibrary m_library;
    const char *m_purpose;
    QFuture<bool> m_loading; // invalid before the first prepare()
};

// A request that is made when its module is there.
template<typename Result>
class OnceLoaded final : public platform::Operation
{
public:
    using Done = std::function<void(Result)>;
    using Request = std::function<platform::Task(Done)>;

    OnceLoaded(LoadableModule &module, Request request, Done done)
        : m_done(std::move(done))
        , m_loading(module.load([this, request = std::move(request)] {
            m_request =
                request([this](Result result) { finish([&] { m_done(std::move(result)); }); });
        }))
    {
    }

private:
    void stop() override
    {
        m_loading.cancel();
        m_request.cancel();
    }

    Done m_done;
    platform::Task m_loading;
    platform::Task m_request;
};

} // namespace nivora::linuxdesktop
