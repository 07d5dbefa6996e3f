#include "platform_linux/secret_libsecret_store.h"

#include "platform_linux_keyring/keyring.h"

#include "platform/log.h"

#include "keyring_module.h"

#include <QCoreApplication>

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// What callers are promised is 250 ms; the rest is for waking up.
constexpr auto readWait = 240ms;
constexpr auto closingWait = 250ms;

using platform::SecretAnswer;
using platform::SecretBytes;
using Outcome = Keyring::Outcome;

struct Reading
{
    bool done = false;
    SecretAnswer answer;
};

struct Job
{
    SecretName name;
    // Absent for a job that carries out what is pending for the name.
    std::shared_ptr<Reading> reading;
};

// What a write or a removal wants to leave behind.
struct Pending
{
    std::optional<SecretBytes> secret;
    quint64 number = 0;
    bool waitsForUnlock = false;
};

} // namespace

// Everything below the line is shared by the threads and guarded by the mutex.
class LibsecretStore::Worker
{
public:
    explicit Worker(const QString &module)
        : m_module(module)
        , m_thread([this] { run(); })
    {
    }
    ~Worker();

    SecretAnswer read(const SecretName &name);
    void change(const SecretName &name, std::optional<SecretBytes> secret);

private:
    void run();
    Outcome perform(Keyring &keyring, Job &job, std::unique_lock<std::mutex> &lock);
    Outcome performChange(Keyring &keyring, const SecretName &name,
                          std::unique_lock<std::mutex> &lock);
    bool isIdle() const { return !m_busy && m_queue.empty(); }
    void askToUnlock(Keyring &keyring, const QString &service, bool create);
    void finishUnlocking(bool unlocked);

    const QString m_module;

    // ---
    std::mutex m_mutex;
    Keyring *m_keyring = nullptr;       // the thread's
    std::condition_variable m_wake;     // the queue or m_closing changed
    std::condition_variable m_answered; // a job has ended
    std::deque<Job> m_queue;
    std::map<SecretName, Pending> m_pending;
    quint64 m_changes = 0;
    bool m_busy = false;
    bool m_stuck = false;
    bool m_closing = false;
    bool m_askedToUnlock = false;
    bool m_unlocking = false;

    std::thread m_unlocker;
    std::thread m_thread;
};

LibsecretStore::Worker::~Worker()
{
    {
        std::unique_lock lock(m_mutex);
        if (!m_stuck)
            m_answered.wait_for(lock, closingWait, [this] { return isIdle(); });
        m_closing = true;
        if (m_keyring)
            m_keyring->cancel();
    }
    m_wake.notify_all();
    m_thread.join();
}

SecretAnswer LibsecretStore::Worker::read(const SecretName &name)
{
    std::unique_lock lock(m_mutex);
    if (const auto pending = m_pending.find(name); pending != m_pending.end())
        return {.secret = pending->second.secret, .isKnown = true};
    // A stuck keyring gets one job at a time, to find out when it comes back.
    if (m_stuck && !isIdle())
        return {};

    const auto reading = std::make_shared<Reading>();
    m_queue.push_back({name, reading});
    m_wake.notify_one();
    if (m_stuck)
        return {};
    if (!m_answered.wait_for(lock, readWait, [&] { return reading->done; })) {
        m_stuck = true;
        qCWarning(log::app, "Keyring: no answer, secrets are unknown until it comes back");
        return {};
    }
    return reading->answer;
}

void LibsecretStore::Worker::change(const SecretName &name, std::optional<SecretBytes> secret)
{
    const std::scoped_lock lock(m_mutex);
    m_pending.insert_or_assign(name, Pending{std::move(secret), ++m_changes, false});
    m_queue.push_back({name, nullptr});
    m_wake.notify_one();
}

void LibsecretStore::Worker::run()
{
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_closing || !m_queue.empty(); });
    if (m_closing)
        return;
    m_busy = true;
    lock.unlock();
    const std::unique_ptr<Keyring> keyring = loadKeyring(m_module);
    lock.lock();
    m_keyring = keyring.get();
    bool timedOut = false;
    if (!m_closing) {
        lock.unlock();
        timedOut = keyring->connect() == Outcome::TimedOut;
        lock.lock();
    }
    for (;;) {
        m_busy = false;
        m_stuck = timedOut;
        m_answered.notify_all();
        m_wake.wait(lock, [this] { return m_closing || !m_queue.empty(); });
        if (m_closing)
            break;
        Job job = std::move(m_queue.front());
        m_queue.pop_front();
        m_busy = true;
        timedOut = perform(*keyring, job, lock) == Outcome::TimedOut;
        keyring->handlePending();
    }
    m_keyring = nullptr;
    lock.unlock();
    // It asks the keyring too.
    if (m_unlocker.joinable())
        m_unlocker.join();
}

// Called and left with the lock held, which is released meanwhile.
Outcome LibsecretStore::Worker::perform(Keyring &keyring, Job &job,
                                        std::unique_lock<std::mutex> &lock)
{
    if (!job.reading)
        return performChange(keyring, job.name, lock);
    lock.unlock();
    SecretBytes secret;
    const Outcome outcome = keyring.read(job.name, secret);
    lock.lock();
    if (outcome == Outcome::Done)
        job.reading->answer.secret = std::move(secret);
    job.reading->answer.isKnown = outcome == Outcome::Done || outcome == Outcome::Absent;
    if (outcome == Outcome::Locked)
        askToUnlock(keyring, job.name.service, false);
    job.reading->done = true;
    return outcome;
}

Outcome LibsecretStore::Worker::performChange(Keyring &keyring, const SecretName &name,
                                              std::unique_lock<std::mutex> &lock)
{
    const auto pending = m_pending.find(name);
    if (pending == m_pending.end())
        return Outcome::Done;
    const Pending wanted = pending->second;
    lock.unlock();
    const Outcome outcome =
        wanted.secret ? keyring.write(name, *wanted.secret) : keyring.remove(name);
    lock.lock();
    if (outcome == Outcome::Locked)
        askToUnlock(keyring, name.service, wanted.secret.has_value());

    const auto now = m_pending.find(name);
    if (now == m_pending.end() || now->second.number != wanted.number)
        return outcome; // a later change has its own job
    if (outcome == Outcome::Locked && m_unlocking)
        now->second.waitsForUnlock = true;
    else
        m_pending.erase(now);
    return outcome;
}

// In a thread of its own: it lasts as long as the user's dialog.
void LibsecretStore::Worker::askToUnlock(Keyring &keyring, const QString &service, bool create)
{
    if (std::exchange(m_askedToUnlock, true))
        return;
    m_unlocking = true;
    m_unlocker = std::thread(
        [this, &keyring, service, create] { finishUnlocking(keyring.unlock(service, create)); });
}

void LibsecretStore::Worker::finishUnlocking(bool unlocked)
{
    const std::scoped_lock lock(m_mutex);
    m_unlocking = false;
    for (auto pending = m_pending.begin(); pending != m_pending.end();) {
        if (!pending->second.waitsForUnlock) {
            ++pending;
        } else if (unlocked) {
            pending->second.waitsForUnlock = false;
            m_queue.push_back({pending->first, nullptr});
            ++pending;
        } else {
            pending = m_pending.erase(pending);
        }
    }
    m_wake.notify_one();
}

QString LibsecretStore::defaultModule()
{
    return QCoreApplication::applicationDirPath() + u'/' + QStringLiteral(NIVORA_KEYRING_MODULE);
}

LibsecretStore::LibsecretStore(const QString &module)
    : m_worker(std::make_unique<Worker>(module))
{
}

LibsecretStore::~LibsecretStore() = default;

SecretAnswer LibsecretStore::read(const QString &service, const QString &account)
{
    return m_worker->read({service, account});
}

void LibsecretStore::write(const QString &service, const QString &account,
                           const SecretBytes &secret)
{
    m_worker->change({service, account}, secret);
}

void LibsecretStore::remove(const QString &service, const QString &account)
{
    m_worker->change({service, account}, std::nullopt);
}

} // namespace nivora::linuxdesktop
