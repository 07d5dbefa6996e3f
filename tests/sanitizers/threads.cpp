#include <QMetaObject>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <sanitizer/tsan_interface.h>

#include <dlfcn.h>

#include <utility>

// What every program is linked with that is built with the thread sanitizer.

// Qt and GLib are not built with it; tsan.supp tells what follows from that. Programs
// start others while they have threads, and those go on to have some of their own.
extern "C" const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1:die_after_fork=0:second_deadlock_stack=1";
}

// The sanitizer does not see what Qt's own locks order. The functions below stand in place
// of Qt's own, do what those do and tell it, each of just what Qt promises: that handing
// work over comes before the work, and a thread's quit() before the end of a wait for it.

namespace {

class HandedWork final : public QRunnable
{
public:
    explicit HandedWork(std::function<void()> work)
        : m_work(std::move(work))
    {
        __tsan_release(this);
    }

    void run() override
    {
        __tsan_acquire(this);
        m_work();
    }

private:
    std::function<void()> m_work;
};

class HandedCall final : public QtPrivate::QSlotObjectBase
{
public:
    explicit HandedCall(QSlotObjectBase *callee)
        : QSlotObjectBase(&perform)
        , m_callee(callee)
    {
        __tsan_release(callee);
    }

private:
    static void perform(int operation, QSlotObjectBase *self, QObject *receiver, void **arguments,
                        bool *)
    {
        auto *const call = static_cast<HandedCall *>(self);
        __tsan_acquire(call->m_callee);
        if (operation == QSlotObjectBase::Call) {
            call->m_callee->call(receiver, arguments);
            __tsan_release(call->m_callee); // the last one to hold it destroys it
        } else if (operation == Destroy) {
            call->m_callee->destroyIfLastRef();
            delete call;
        }
    }

    QSlotObjectBase *m_callee;
};

template<typename Function>
Function *qtsOwn(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

void QThreadPool::start(std::function<void()> work, int priority)
{
    start(new HandedWork(std::move(work)), priority);
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot,
                                   Qt::ConnectionType type, void *result)
{
    static auto *const invoke =
        qtsOwn<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14"
            "ConnectionTypeEPv");
    return invoke(object, new HandedCall(slot), type, result);
}

void QThread::quit()
{
    __tsan_release(this);
    exit();
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static auto *const wait =
        qtsOwn<bool(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    if (!wait(this, deadline))
        return false;
    __tsan_acquire(this);
    return true;
}
