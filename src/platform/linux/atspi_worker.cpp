#include "atspi_worker.h"

#include "atspi_focus.h"
#include "session_bus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QUuid>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto serviceName = u"org.a11y.Bus"_s;
const auto servicePath = u"/org/a11y/bus"_s;
const auto statusInterface = u"org.a11y.Status"_s;
const auto switchName = u"IsEnabled"_s;
const auto propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

// The service may have to be started first. Nobody waits for these calls except
// isTrusted(), which has a bound of its own.
constexpr int serviceWait = 3000; // ms
constexpr auto searchWait = 1s;

} // namespace

void AtspiStatus::set(bool trusted)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_trusted = trusted;
    }
    m_changed.notify_all();
}

bool AtspiStatus::trusted(std::chrono::milliseconds wait)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, wait, [this] { return m_trusted.has_value(); });
    return m_trusted.value_or(false);
}

OwnBus::OwnBus(const QString &address)
    : m_name(u"nivora-"_s + QUuid::createUuid().toString(QUuid::Id128))
    , m_connection(address.isEmpty()
                       ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name)
                       : QDBusConnection::connectToBus(address, m_name))
{
}

OwnBus::~OwnBus()
{
    QDBusConnection::disconnectFromBus(m_name);
}

AtspiWorker::AtspiWorker(QString sessionBus, std::shared_ptr<AtspiStatus> status)
    : m_sessionBusAddress(std::move(sessionBus))
    , m_status(std::move(status))
{
}

AtspiWorker::~AtspiWorker() = default;

void AtspiWorker::start(qint64 activeProcess)
{
    if (m_sessionBusAddress.isEmpty() && !isSessionBusNamed()) {
        m_status->set(false);
        return;
    }
    m_sessionBus = std::make_unique<OwnBus>(m_sessionBusAddress);
    auto &bus = m_sessionBus->connection();
    bus.connect(serviceName, servicePath, propertiesInterface, u"PropertiesChanged"_s,
                {statusInterface}, QString(), this, SLOT(onStatusChanged(QDBusMessage)));
    bus.connect(u"org.freedesktop.DBus"_s, QString(), u"org.freedesktop.DBus"_s,
                u"NameOwnerChanged"_s, {serviceName}, QString(), this,
                SLOT(onServiceChanged(QDBusMessage)));
    refresh();
    if (m_focus && activeProcess != 0)
        m_focus->prepare(activeProcess, QDeadlineTimer(searchWait));
}

void AtspiWorker::refresh()
{
    m_status->set(isSwitchedOn() && joinAccessibilityBus());
}

void AtspiWorker::switchOn()
{
    askService(propertiesInterface, u"Set"_s,
               {statusInterface, switchName, QVariant::fromValue(QDBusVariant(true))});
    refresh();
}

void AtspiWorker::read(qint64 process, int gtkScale, QDeadlineTimer deadline,
                       QPromise<Element> &promise)
{
    promise.start();
    if (m_focus && !deadline.hasExpired() && m_status->trusted(0ms))
        promise.addResult(m_focus->read(process, gtkScale, deadline));
    promise.finish();
}

bool AtspiWorker::isSwitchedOn()
{
    return askService(propertiesInterface, u"Get"_s, {statusInterface, switchName})
        .value<QDBusVariant>()
        .variant()
        .toBool();
}

bool AtspiWorker::joinAccessibilityBus()
{
    if (m_focus && m_accessibilityBus->connection().isConnected())
        return true;
    m_focus.reset();
    m_accessibilityBus.reset();
    const auto address = askService(serviceName, u"GetAddress"_s, {}).toString();
    if (address.isEmpty())
        return false;
    auto bus = std::make_unique<OwnBus>(address);
    if (!bus->connection().isConnected())
        return false;
    bus->connection().connect(QString(), u"/org/freedesktop/DBus/Local"_s,
                              u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                              SLOT(onAccessibilityBusLost(QDBusMessage)));
    auto focus =
        std::make_unique<AtspiFocus>(bus->connection(), QCoreApplication::applicationPid());
    if (!focus->listen(QDeadlineTimer(serviceWait)))
        return false;
    m_accessibilityBus = std::move(bus);
    m_focus = std::move(focus);
    return true;
}

QVariant AtspiWorker::askService(const QString &interface, const QString &method,
                                 const QVariantList &arguments)
{
    if (!m_sessionBus)
        return {};
    auto question = QDBusMessage::createMethodCall(serviceName, servicePath, interface, method);
    question.setArguments(arguments);
    const auto answer = m_sessionBus->connection().call(question, QDBus::Block, serviceWait);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0) : QVariant();
}

void AtspiWorker::onStatusChanged(const QDBusMessage &)
{
    refresh();
}

void AtspiWorker::onServiceChanged(const QDBusMessage &signal)
{
    const bool isThere = !signal.arguments().value(2).toString().isEmpty();
    if (isThere)
        refresh();
    else
        m_status->set(false);
}

void AtspiWorker::onAccessibilityBusLost(const QDBusMessage &)
{
    m_status->set(false);
    m_focus.reset();
}

} // namespace nivora::linuxdesktop
