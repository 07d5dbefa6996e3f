#include "support/product.h"

#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/watchdog.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QUuid>

#include <algorithm>
#include <cstdio>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto resultName = u"译文"_s;

// The longest stall of a test program, told when it ends.
struct LongestStall
{
    double length = 0;

    ~LongestStall()
    {
        std::printf("longest stall of the product's main thread: %.0f ms\n", length);
    }
};

} // namespace

Product::Product(DesktopSession &session, X11Driver &user, const AccessibilityTree &tree)
    : m_session(session)
    , m_user(user)
    , m_tree(tree)
{
}

Product::~Product()
{
    endWatch();
    if (m_process)
        m_session.end(m_process);
}

QString Product::program()
{
    return QCoreApplication::applicationDirPath() + u"/nivora"_s;
}

bool Product::start(const QJsonObject &preferences, const QMap<QString, QString> &variables)
{
    if (!preferences.isEmpty()) {
        const auto folder = m_session.folder() + u"/config/app.nivora"_s;
        QDir().mkpath(folder);
        QFile file(folder + u"/defaults.json"_s);
        if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(preferences).toJson()) < 0)
            return false;
    }

    // For the message of a test that fails.
    auto environment = m_session.environment();
    environment.insert(u"QT_LOGGING_RULES"_s, u"app.nivora.*.debug=true"_s);
    environment.insert(u"LANGUAGE"_s, u"zh_CN"_s);
    for (auto each = variables.begin(); each != variables.end(); ++each)
        environment.insert(each.key(), each.value());
    m_process = m_session.launch(program(), {}, environment);
    if (!m_process)
        return false;
    const auto connectionName = QUuid::createUuid().toString();
    const bool owned = [&] {
        const auto bus = QDBusConnection::connectToBus(m_session.busAddress(), connectionName);
        const auto ownsName = [&] {
            const QDBusReply<uint> owner = bus.interface()->servicePid(u"app.nivora"_s);
            return owner.isValid() && owner.value() == m_process->processId();
        };
        // The icon comes first; then it begins, and answers when that is done.
        const auto hasBegun = [&] { return log().contains(u"启动: "_s); };
        const auto question = QDBusMessage::createMethodCall(
            u"app.nivora"_s, u"/app/nivora"_s, u"org.freedesktop.DBus.Introspectable"_s,
            u"Introspect"_s);
        return bus.isConnected() &&
               waitUntil([&] { return (ownsName() && hasBegun()) || !isRunning(); }, 20s) &&
               isRunning() && bus.call(question).type() == QDBusMessage::ReplyMessage;
    }();
    QDBusConnection::disconnectFromBus(connectionName);
    endWatch();
    if (owned && m_isWatched) {
        std::vector<qint64> processes = m_session.serverProcessIds();
        processes.push_back(m_process->processId());
        m_watchdog = std::make_unique<Watchdog>(m_session.busAddress(), u"app.nivora"_s,
                                                u"/app/nivora"_s, std::move(processes));
    }
    return owned;
}

void Product::endWatch()
{
    if (!m_watchdog)
        return;
    static LongestStall longest;
    longest.length = std::max(longest.length, m_watchdog->longestSilence());
    for (const auto &[length, sinceStart, isDoubtful] : m_watchdog->stalls()) {
        const char *verdict = isDoubtful                        ? "a stall of a busy machine"
                              : length <= m_longestAllowedStall ? "a stall"
                                                                : "the main thread stood still";
        qInfo("%s: %.0f ms, %.1f s after the start", verdict, length, sinceStart / 1000);
    }
    m_watchdog.reset();
}

double Product::takeLongestStall()
{
    return m_watchdog->takeLongestSilence();
}

bool Product::isRunning() const
{
    return m_process && m_process->state() == QProcess::Running;
}

qint64 Product::processId() const
{
    return m_process ? m_process->processId() : 0;
}

QString Product::logFile() const
{
    return m_process ? m_process->objectName() : QString();
}

QString Product::log() const
{
    return m_process ? QString::fromUtf8(m_session.errorOutput(m_process)) : QString();
}

X11Driver::Condition Product::panel()
{
    return X11Driver::ofClass(u"Nivora"_s, u"panel"_s);
}

std::optional<X11Driver::Window> Product::waitForPanel(std::chrono::milliseconds bound) const
{
    const auto window = m_user.waitForMapped(panel(), bound);
    return window && m_user.waitForActive(window->id, bound) ? window : std::nullopt;
}

bool Product::waitForPanelGone(std::chrono::milliseconds bound) const
{
    return m_user.waitForGone(panel(), bound);
}

std::optional<AccessibleElement> Product::control(const QString &name) const
{
    return m_tree.find(processId(), AccessibilityTree::hasName(name));
}

std::optional<AccessibleElement> Product::waitForControl(const QString &name,
                                                         std::chrono::milliseconds bound) const
{
    return m_tree.waitFor(processId(), AccessibilityTree::hasName(name), bound);
}

std::optional<AccessibleElement> Product::controlBeginning(const QString &start) const
{
    return m_tree.find(processId(), [&](const AccessibleElement &element) {
        return element.name().startsWith(start);
    });
}

QString Product::translation() const
{
    const auto area = control(resultName);
    return area ? area->text() : QString();
}

bool Product::waitForTranslation(const QString &text, std::chrono::milliseconds bound) const
{
    return waitUntil([&] { return translation() == text; }, bound);
}

QString Product::dump() const
{
    return m_tree.dump(processId());
}

} // namespace nivora::test
