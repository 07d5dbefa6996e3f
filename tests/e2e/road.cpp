#include "road.h"

#include "localcloud/event_stream.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QUuid>

#include <X11/keysym.h>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

Road::Road(const DesktopSession::Options &options)
    : m_options(options)
{
}

Road::~Road()
{
    if (QTest::currentTestFailed())
        qWarning().noquote() << problem();
}

bool Road::prepare(quint16 port)
{
    // A port of one's choice may be another's for a while.
    if (!waitUntil([&] { return server.listen(port); }, patience))
        return fail(u"the service cannot listen"_s);
    if (!session.start(m_options))
        return fail(session.error());
    user.emplace(session.displayName());
    tree.emplace(session.accessibilityBusAddress());
    clipboard.emplace(session);
    product.emplace(session, *user, *tree);
    product->watch();
    return true;
}

bool Road::begin(const QJsonObject &preferences)
{
    if (!prepare())
        return false;
    QJsonObject all{{u"hasCompletedOnboarding"_s, true},
                    {u"hasToldOfMissingTray"_s, true},
                    {u"useCustomBackend"_s, true},
                    {u"apiBaseURL"_s, server.url().toString()},
                    // A request of its own, which takes an answer from the tests.
                    {u"showBackTranslation"_s, false}};
    for (auto entry = preferences.begin(); entry != preferences.end(); ++entry)
        all[entry.key()] = entry.value();
    return product->start(all) || fail(u"the product does not run"_s);
}

bool Road::open(Editor::Toolkit toolkit, const QString &text, bool selected)
{
    editor.emplace(session, *user, *tree);
    if (!editor->open(toolkit, text))
        return fail(u"the editor does not show its document"_s);
    return !selected || editor->selectAll() || fail(u"the text cannot be selected"_s);
}

bool Road::translate(const QString &text, const QString &translation, Editor::Toolkit toolkit,
                     Trigger trigger)
{
    server.enqueue(localcloud::eventStream({translation}));
    if (!open(toolkit, text))
        return false;
    pull(trigger);
    return product->waitForPanel(patience) && product->waitForTranslation(translation, patience);
}

QString Road::problem() const
{
    QString all = m_problem;
    if (product)
        all += u"\nlog:\n"_s + product->log() + u"\nwindows:\n"_s + product->dump();
    return all;
}

void Road::pull(Trigger trigger)
{
    if (trigger == Trigger::DoubleShift)
        user->tapShiftTwice();
    else
        user->press({XK_Control_L, XK_Alt_L, XK_o});
}

bool Road::ask(const QString &action) const
{
    const auto name = QUuid::createUuid().toString();
    auto call = QDBusMessage::createMethodCall(
        u"app.nivora"_s, u"/app/nivora"_s, u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    call.setArguments({action, QVariantList(), QVariantMap()});
    // What this thread serves may be what the product waits for.
    const auto answer = QDBusConnection::connectToBus(session.busAddress(), name)
                            .call(call, QDBus::BlockWithGui, int(patience / 1ms));
    QDBusConnection::disconnectFromBus(name);
    return answer.type() == QDBusMessage::ReplyMessage;
}

bool Road::waitForWindow(const QString &role) const
{
    const auto window = user->waitForMapped(X11Driver::ofClass(u"Nivora"_s, role), patience);
    return window && user->waitForActive(window->id, patience);
}

bool Road::waitForGone(const QString &role) const
{
    return user->waitForGone(X11Driver::ofClass(u"Nivora"_s, role), patience);
}

void Road::type(QByteArrayView text)
{
    for (const char each : text)
        user->press({X11Driver::Symbol(each)});
}

bool Road::press(const QString &name) const
{
    const auto control = product->waitForControl(name, patience);
    return control && control->press();
}

bool Road::choose(const std::vector<int> &entries)
{
    // A menu has neither a role nor the size of a tray icon.
    const auto menu = [](const X11Driver::Window &window) {
        return window.className == u"Nivora" && window.role.isEmpty() &&
               window.geometry.width() > 80;
    };
    if (!user->waitForMapped(menu, patience))
        return fail(u"there is no menu"_s);
    for (std::size_t level = 0; level < entries.size(); ++level) {
        if (level > 0)
            user->press({XK_Right}); // opens on the first entry that can be chosen
        for (int i = level > 0 ? 1 : 0; i < entries[level]; ++i)
            user->press({XK_Down});
    }
    user->press({XK_Return});
    return user->waitForGone(menu, patience) || fail(u"the menu stays"_s);
}

QByteArray Road::secretTool(const QString &command, const QString &account,
                            const QByteArray &input) const
{
    QStringList arguments{command, u"service"_s, u"app.nivora"_s, u"account"_s, account};
    if (command == u"store"_s)
        arguments.insert(1, u"--label=Nivora"_s);
    QProcess process;
    process.setProcessEnvironment(session.environment());
    process.start(u"secret-tool"_s, arguments);
    process.write(input);
    process.closeWriteChannel();
    waitUntil([&] { return process.state() == QProcess::NotRunning; }, patience);
    return process.readAllStandardOutput().trimmed();
}

QString Road::prompt(qsizetype request) const
{
    const auto body = QJsonDocument::fromJson(server.requests().value(request).body).object();
    return body[u"messages"_s].toArray().last().toObject()[u"content"_s].toString();
}

bool Road::waitForRequests(qsizetype count) const
{
    return waitUntil([&] { return server.requests().size() >= count; }, patience);
}

bool Road::fail(const QString &what)
{
    m_problem = what;
    return false;
}

} // namespace nivora::test
