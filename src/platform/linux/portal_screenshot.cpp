#include "platform_linux/portal_screenshot.h"

#include "session_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QUrl>
#include <QUuid>
#include <QVariantMap>

#include <memory>
#include <xcb/xcb.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

const auto portalName = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto screenshotInterface = u"org.freedesktop.portal.Screenshot"_s;
const auto requestInterface = u"org.freedesktop.portal.Request"_s;
constexpr int answerLimit = 3000; // milliseconds, for an answer without the user

// Of a portal's response.
constexpr uint succeeded = 0;
constexpr uint cancelledByUser = 1;

QDBusConnection bus()
{
    return QDBusConnection::sessionBus();
}

// The library would launch a bus of its own where there is none.
bool hasBus()
{
    return isSessionBusNamed() && bus().isConnected();
}

class PortalQuery final : public platform::Operation
{
public:
    explicit PortalQuery(std::function<void(bool)> done)
        : m_done(std::move(done))
    {
        auto question = QDBusMessage::createMethodCall(
            portalName, portalPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << screenshotInterface << u"version"_s;
        m_answer =
            std::make_unique<QDBusPendingCallWatcher>(bus().asyncCall(question, answerLimit));
        connect(
            m_answer.get(), &QDBusPendingCallWatcher::finished, this,
            [this] {
                const QDBusPendingReply<QDBusVariant> reply(*m_answer);
                finish([&, has = reply.isValid()] { m_done(has); });
            },
            Qt::QueuedConnection);
    }

private:
    void stop() override { m_answer->disconnect(this); }

    std::function<void(bool)> m_done;
    std::unique_ptr<QDBusPendingCallWatcher> m_answer;
};

class Response final : public QObject
{
    Q_OBJECT

public:
    std::function<void(uint, const QVariantMap &)> onResponse;

public Q_SLOTS:
    void responded(uint status, const QVariantMap &results) { onResponse(status, results); }
};

class ScreenshotOperation final : public platform::Operation
{
public:
    explicit ScreenshotOperation(std::function<void(const PortalScreenshot &)> done)
        : m_done(std::move(done))
    {
        m_response.onResponse = [this](uint status, const QVariantMap &results) {
            take(status, results);
        };
        // Listened for first, at the place that the portal's documents give: the
        // response may come before the answer to the call.
        const QString token = u"nivora_"_s + QUuid::createUuid().toString(QUuid::Id128);
        QString sender = bus().baseService().mid(1);
        sender.replace(u'.', u'_');
        listen(portalPath + u"/request/"_s + sender + u'/' + token);

        auto call = QDBusMessage::createMethodCall(portalName, portalPath, screenshotInterface,
                                                   u"Screenshot"_s);
        call << QString() << QVariantMap{{u"handle_token"_s, token}, {u"interactive"_s, true}};
        m_answer = std::make_unique<QDBusPendingCallWatcher>(bus().asyncCall(call, answerLimit));
        connect(
            m_answer.get(), &QDBusPendingCallWatcher::finished, this,
            [this] {
                const QDBusPendingReply<QDBusObjectPath> reply(*m_answer);
                if (reply.isError())
                    end({});
                else if (reply.value().path() != m_request)
                    listen(reply.value().path()); // as portals before version 0.9 do
            },
            Qt::QueuedConnection);
    }

private:
    void listen(const QString &request)
    {
        unlisten();
        m_request = request;
        bus().connect(portalName, m_request, requestInterface, u"Response"_s, &m_response,
                      SLOT(responded(uint, QVariantMap)));
    }

    void unlisten()
    {
        bus().disconnect(portalName, m_request, requestInterface, u"Response"_s, &m_response,
                         SLOT(responded(uint, QVariantMap)));
    }

    void take(uint status, const QVariantMap &results)
    {
        const QUrl uri(results.value(u"uri"_s).toString());
        if (status == succeeded && uri.isLocalFile())
            end({PortalScreenshot::Result::Taken, uri.toLocalFile()});
        else
            end({status == cancelledByUser ? PortalScreenshot::Result::Cancelled
                                           : PortalScreenshot::Result::Failed,
                 {}});
    }

    void end(const PortalScreenshot &shot)
    {
        finish([&] { m_done(shot); });
    }

    void stop() override
    {
        m_answer->disconnect(this);
        unlisten();
    }

    std::function<void(const PortalScreenshot &)> m_done;
    Response m_response;
    QString m_request;
    std::unique_ptr<QDBusPendingCallWatcher> m_answer;
};

} // namespace

bool x11ShowsAllWindows()
{
    if (qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland" ||
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return false;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return !xcb_connection_has_error(connection.get());
}

platform::Task queryScreenshotPortal(std::function<void(bool)> done)
{
    if (!hasBus())
        return platform::delay(0ms, [done = std::move(done)] { done(false); });
    return platform::Task(new PortalQuery(std::move(done)));
}

platform::Task takePortalScreenshot(std::function<void(const PortalScreenshot &)> done)
{
    if (!hasBus())
        return platform::delay(0ms, [done = std::move(done)] { done({}); });
    return platform::Task(new ScreenshotOperation(std::move(done)));
}

} // namespace nivora::linuxdesktop

#include "portal_screenshot.moc"
