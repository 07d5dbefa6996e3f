#include "road.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <X11/keysym.h>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

Road::Road(const DesktopSession::Options &options)
    : m_options(options)
{
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
