#pragma once

#include "platform/accessibility.h"

#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QObject>
#include <QPromise>

#include <condition_variable>
#include <memory>
#include <mutex>

class QDBusMessage;

namespace nivora::linuxdesktop {

class AtspiFocus;

// Whether the accessibility service is there and switched on, as far as the
// worker knows. Shared by both threads.
class AtspiStatus
{
public:
    void set(bool trusted);
    // Waits until there is a first answer, at most `wait`.
    bool trusted(std::chrono::milliseconds wait);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<bool> m_trusted;
};

// A connection to a bus of this program's own, closed with the object.
class OwnBus
{
public:
    // An empty address stands for the session bus of the environment.
    explicit OwnBus(const QString &address);
    ~OwnBus();
    OwnBus(const OwnBus &) = delete;
    OwnBus &operator=(const OwnBus &) = delete;

    QDBusConnection &connection() { return m_connection; }

private:
    QString m_name;
    QDBusConnection m_connection;
};

// The half of AtspiAccessibility that lives in the thread that may block. All
// members are called there.
class AtspiWorker : public QObject
{
    Q_OBJECT

public:
    using Element = std::optional<platform::FocusedElement>;

    AtspiWorker(QString sessionBus, std::shared_ptr<AtspiStatus> status);
    ~AtspiWorker() override;

    void start(qint64 activeProcess);
    // Looks again whether the service is there and switched on.
    void refresh();
    void switchOn();
    void read(qint64 process, int gtkScale, QDeadlineTimer deadline, QPromise<Element> &promise);

private Q_SLOTS:
    void onStatusChanged(const QDBusMessage &signal);
    void onServiceChanged(const QDBusMessage &signal);
    void onAccessibilityBusLost(const QDBusMessage &signal);

private:
    bool isSwitchedOn();
    bool joinAccessibilityBus();
    QVariant askService(const QString &interface, const QString &method,
                        const QVariantList &arguments);

    QString m_sessionBusAddress;
    std::shared_ptr<AtspiStatus> m_status;
    std::unique_ptr<OwnBus> m_sessionBus;
    std::unique_ptr<OwnBus> m_accessibilityBus;
    std::unique_ptr<AtspiFocus> m_focus; // exactly while the bus is joined
};

} // namespace nivora::linuxdesktop
