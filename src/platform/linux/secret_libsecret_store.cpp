#include "platform_linux/secret_libsecret_store.h"

#include "platform_linux_keyring/keyring.h"

#include "platform/log.h"

#include "on_demand_keyring.h"

#include <QCoreApplication>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// What callers are promised is 100 ms; the rest is for waking up.
constexpr std::chrono::milliseconds readWait = 90ms;
// For a keyring that is late, altogether.
constexpr std::chrono::milliseconds patience = 240ms;
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
    Worker(const QString &module, std::function<void()> tellOfAnswer)
        : m_module(module)
        , m_tellOfAnswer(std::move(tellOfAnswer))
        , m_thread([this] { run(); })
    {
    }
    ~Worker();

    // Absent when it waited in vain.
    std::optional<SecretAnswer> read(const SecretName &name, bool mayWait);
    void change(const SecretName &name, std::optional<SecretBytes> secret);

private:
    void run();
    Outcome perform(Keyring &keyring, Job &job, std::unique_lock<std::mutex> &lock);
    Outcome performChange(Keyring &keyring, const SecretName &name,
                          std::unique_lock<std::mutex> &lock);
    bool isIdle() const { return !m_busy && m_queue.empty(); }
    bool isStuck() const { return m_patience == 0ms; }
    void endJob(Outcome outcome);
    void askToUnlock(Keyring &keyring, const QString &service, bool create);
    void finishUnlocking(bool unlocked);

    const QString m_module;
    const std::function<void()> m_tellOfAnswer;

    // ---
    std::mutex m_mutex;
    Keyring *m_keyring = nullptr;       // the thread's
    std::condition_variable m_wake;     // the queue or m_closing changed
    std::condition_variable m_answered; // a job has ended
    std::deque<Job> m_queue;
    std::map<SecretName, Pending> m_pending;
    std::map<SecretName, std::shared_ptr<Reading>> m_readings; // without an answer yet
    quint64 m_changes = 0;
    bool m_busy = false;
    std::chrono::milliseconds m_patience = patience; // what is left of it
    bool m_hasTold = false; // of an answer, since the last one that came in time
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
        if (!isStuck())
            m_answered.wait_for(lock, closingWait, [this] { return isIdle(); });
        m_closing = true;
        if (m_keyring)
            m_keyring->cancel();
    }
    m_wake.notify_all();
    m_thread.join();
}

std::optional<SecretAnswer> LibsecretStore::Worker::read(const SecretName &name, bool mayWait)
{
    std::unique_lock lock(m_mutex);
    if (const auto pending = m_pending.find(name); pending != m_pending.end())
        return SecretAnswer{.secret = pending->second.secret, .isKnown = true};
    // A stuck keyring gets one job at a time, to find out when it comes back.
    if (isStuck() && !isIdle())
        return SecretAnswer{};

    auto &open = m_readings[name];
    if (!open) {
        open = std::make_shared<Reading>();
        m_queue.push_back({name, open});
        m_wake.notify_one();
    }
    if (isStuck() || !mayWait)
        return SecretAnswer{};
    const auto reading = open;
    const auto wait = std::min(readWait, m_patience);
    if (m_answered.wait_for(lock, wait, [&] { return reading->done; })) {
        m_hasTold = false;
        return reading->answer;
    }
    if (m_patience == patience)
        qCWarning(log::app, "Keyring: no answer, secrets are unknown until it comes back");
    m_patience = std::max(m_patience - wait, 0ms);
    return std::nullopt;
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
    OnDemandKeyring keyring(m_module);
    std::unique_lock lock(m_mutex);
    m_keyring = &keyring;
    for (;;) {
        m_wake.wait(lock, [this] { return m_closing || !m_queue.empty(); });
        if (m_closing)
            break;
        Job job = std::move(m_queue.front());
        m_queue.pop_front();
        m_busy = true;
        const Outcome outcome = perform(keyring, job, lock);
        keyring.handlePending();
        m_busy = false;
        endJob(outcome);
    }
    m_keyring = nullptr;
    lock.unlock();
    // It asks the keyring too.
    if (m_unlocker.joinable())
        m_unlocker.join();
}

// Tells once of a keyring that is late each time: whoever is told asks again.
void LibsecretStore::Worker::endJob(Outcome outcome)
{
    const bool answers = outcome != Outcome::TimedOut && outcome != Outcome::Unavailable;
    if (answers && m_patience < patience && !std::exchange(m_hasTold, true))
        m_tellOfAnswer();
    m_patience = outcome == Outcome::TimedOut ? 0ms : patience;
    m_answered.notify_all();
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
    m_readings.erase(job.name);
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
    if (unlocked)
        m_tellOfAnswer();
}

QString LibsecretStore::defaultModule()
{
    return QCoreApplication::applicationDirPath() + u'/' + QStringLiteral(NIVORA_KEYRING_MODULE);
}

LibsecretStore::LibsecretStore(const QString &module)
    : m_worker(std::make_unique<Worker>(module, [this] { tellOfAnswer(); }))
{
}

LibsecretStore::~LibsecretStore() = default;

SecretAnswer LibsecretStore::read(const QString &service, const QString &account)
{
    const auto answer = m_worker->read({service, account}, !m_hasWaited.isRunning());
    if (!answer)
        m_hasWaited = platform::delay(0ms, [] {});
    return answer.value_or(SecretAnswer());
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
