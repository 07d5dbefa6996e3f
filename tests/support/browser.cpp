#include "support/browser.h"

#include "support/desktop_session.h"
#include "support/wait.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTcpSocket>

#include <X11/keysym.h>

#include <utility>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 40s;
constexpr auto patience = 10s;
constexpr auto placeBound = 3s;
constexpr auto keysBound = 1s;

// Asks twenty times a second what to show and tells what it holds.
constexpr auto page = R"(<!doctype html>
<meta charset="utf-8"><title>Page under test</title>
<style>
    body { margin: 30px; font: 16px sans-serif }
    textarea { width: 400px; height: 80px; font: 16px sans-serif }
</style>
<main></main>
<script>
const main = document.querySelector('main');
let seen = 0, origin = null;
addEventListener('mousemove', e => origin = [e.screenX - e.clientX, e.screenY - e.clientY]);
const box = r => [r.x, r.y, r.width, r.height];
function report() {
    const field = document.activeElement;
    const hasValue = field && field !== document.body && field.value !== undefined;
    const selection = getSelection();
    const places = {};
    for (const each of document.querySelectorAll('[id]'))
        places[each.id] = box(each.getBoundingClientRect());
    return {
        seen, origin, places, active: document.hasFocus(),
        content: hasValue ? field.value : main.innerText,
        cursor: hasValue ? field.selectionStart : -1,
        selected: hasValue ? field.value.slice(field.selectionStart, field.selectionEnd)
                           : selection.toString(),
        selection: selection.rangeCount ? box(selection.getRangeAt(0).getBoundingClientRect())
                                        : null,
    };
}
async function tick() {
    try {
        const answer = await fetch('/', { method: 'POST', body: JSON.stringify(report()) });
        const order = await answer.json();
        if (order.number !== seen) {
            seen = order.number;
            document.activeElement?.blur();
            getSelection().removeAllRanges();
            main.innerHTML = order.html;
            document.querySelector('[data-focus]')?.focus();
        }
    } catch {
    }
    setTimeout(tick, 50);
}
tick();
</script>
)";

// No questions, no first-run pages, nobody called.
constexpr auto firefoxPreferences = R"(
user_pref("browser.aboutwelcome.enabled", false);
user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("browser.startup.homepage_override.mstone", "ignore");
user_pref("browser.newtabpage.enabled", false);
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("termsofuse.bypassNotification", true);
user_pref("toolkit.telemetry.reportingpolicy.firstRun", false);
user_pref("app.update.enabled", false);
user_pref("signon.rememberSignons", false);
user_pref("network.captive-portal-service.enabled", false);
user_pref("network.connectivity-service.enabled", false);
user_pref("network.proxy.type", 0);
user_pref("browser.safebrowsing.downloads.enabled", false);
user_pref("extensions.getAddons.cache.enabled", false);
)";

QString prepareProfile(const QString &folder)
{
    QDir().mkpath(folder);
    QFile preferences(folder + u"/user.js"_s);
    if (preferences.open(QIODevice::WriteOnly))
        preferences.write(firefoxPreferences);
    return folder;
}

} // namespace

Browser::Browser(const Desk &desk, Kind kind)
    : m_desk(desk)
    , m_kind(kind)
{
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (auto *client = m_server.nextPendingConnection()) {
            QObject::connect(client, &QTcpSocket::readyRead, client,
                             [this, client] { serve(client); });
            QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
        }
    });
}

Browser::~Browser()
{
    if (m_process)
        m_desk.session.end(m_process);
}

bool Browser::open()
{
    if (!m_server.listen(QHostAddress::LocalHost))
        return false;
    const QString url = u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
    const QString profile = m_desk.session.folder() + u"/browser"_s;
    if (m_kind == Kind::Firefox) {
        m_process = m_desk.session.launch(
            u"firefox-esr"_s, {u"--no-remote"_s, u"--profile"_s, prepareProfile(profile), url});
    } else {
        // It refuses root its sandbox, and --test-type keeps it from saying so on
        // the page.
        QStringList arguments{u"--no-sandbox"_s,
                              u"--test-type"_s,
                              u"--disable-gpu"_s,
                              u"--no-first-run"_s,
                              u"--no-default-browser-check"_s,
                              u"--no-proxy-server"_s,
                              u"--password-store=basic"_s,
                              u"--disable-background-networking"_s,
                              u"--disable-component-update"_s,
                              u"--disable-sync"_s,
                              u"--disable-dev-shm-usage"_s,
                              u"--window-position=0,0"_s,
                              u"--window-size=1100,700"_s,
                              u"--user-data-dir="_s + profile};
        if (m_kind == Kind::AccessibleChromium)
            arguments.append(u"--force-renderer-accessibility"_s);
        m_process = m_desk.session.launch(u"chromium"_s, arguments + QStringList{url});
    }
    if (!m_process)
        return false;
    const auto isBrowser = [this](const X11Driver::Window &window) {
        return window.title.contains(u"Page under test"_s) && window.geometry.width() > 300;
    };
    const auto window = m_desk.user.waitForMapped(isBrowser, startBound);
    if (!window || !m_desk.user.waitForActive(window->id, startBound))
        return false;
    m_window = window->id;
    const auto says = [this] { return m_report.value(u"active"_s).toBool(); };
    return waitUntil(says, startBound) && show(u"甲"_s);
}

bool Browser::showHtml(const QString &html)
{
    const int number = m_order.value(u"number"_s).toInt() + 1;
    m_order = {{u"number"_s, number}, {u"html"_s, html}};
    return waitUntil([&] { return m_report.value(u"seen"_s).toInt() == number; }, patience);
}

bool Browser::show(const QString &text)
{
    // The first line end after the tag would not count.
    return showHtml(u"<textarea data-focus>\n"_s + text.toHtmlEscaped() + u"</textarea>"_s);
}

bool Browser::selectAll(const QString &expected)
{
    return waitUntil(
        [&] {
            m_desk.user.press({XK_Control_L, XK_a});
            return waitUntil([&] { return selectedText() == expected; }, keysBound);
        },
        patience);
}

bool Browser::deselect()
{
    return waitUntil(
        [&] {
            m_desk.user.press({XK_Control_L, XK_Home});
            return waitUntil(
                [&] {
                    return selectedText().isEmpty() && m_report.value(u"cursor"_s).toInt() == 0;
                },
                keysBound);
        },
        patience);
}

bool Browser::drag(const QString &fromId, const QString &toId, const QString &end)
{
    m_desk.user.movePointer({400, 500});
    const auto isPlaced = [&] {
        return m_report.value(u"origin"_s).isArray() &&
               m_report.value(u"places"_s).toObject().contains(toId);
    };
    if (!waitUntil(isPlaced, patience))
        return false;
    const auto places = m_report.value(u"places"_s).toObject();
    const auto from = onScreen(places.value(fromId)), to = onScreen(places.value(toId));
    m_desk.user.drag(QPointF(from.left() + 1, from.center().y()).toPoint(),
                     QPointF(to.right() - 1, to.center().y()).toPoint());
    return waitUntil([&] { return selectedText().trimmed().endsWith(end); }, patience);
}

QString Browser::selectedText() const
{
    return m_report.value(u"selected"_s).toString();
}

QString Browser::content() const
{
    return m_report.value(u"content"_s).toString();
}

QRectF Browser::selectionOnPage() const
{
    return onScreen(m_report.value(u"selection"_s));
}

QRectF Browser::onScreen(const QJsonValue &rectangle) const
{
    const auto numbers = rectangle.toArray(), origin = m_report.value(u"origin"_s).toArray();
    return QRectF(numbers[0].toDouble(), numbers[1].toDouble(), numbers[2].toDouble(),
                  numbers[3].toDouble())
        .translated(origin[0].toDouble(), origin[1].toDouble());
}

std::optional<AccessibleElement> Browser::focused() const
{
    if (m_kind == Kind::Chromium)
        return std::nullopt;
    const auto isField = [](const AccessibleElement &element) {
        return element.isFocused() && element.role() == u"entry"_s;
    };
    return m_desk.tree.find(m_process->processId(), isField);
}

bool Browser::waitForAccessible(const QString &text, std::chrono::milliseconds bound) const
{
    const auto holds = [&](const AccessibleElement &element) { return element.text() == text; };
    return m_desk.tree.waitFor(m_process->processId(), holds, bound).has_value();
}

QRect Browser::place() const
{
    if (m_kind == Kind::Chromium)
        return {};
    // A browser begins to show its elements when it is first asked for them, and
    // their places a little later, one character after the other.
    QRect found, before;
    const auto isTold = [&] {
        const auto field = focused();
        if (!field)
            return false;
        before = std::exchange(found, field->selectionBounds());
        if (selectedText().isEmpty()) { // as the page says, which knows at once
            const QRect next = field->characterBounds(field->cursor());
            found = {next.x(), next.y(), 0, next.height()};
        }
        return found.height() > 0 && found == before;
    };
    waitUntil(isTold, placeBound, 20ms);
    return found;
}

QRect Browser::frame() const
{
    const auto field = focused();
    return field ? field->frame() : QRect();
}

void Browser::serve(QTcpSocket *client)
{
    const QByteArray request = client->peek(client->bytesAvailable());
    const qsizetype head = request.indexOf("\r\n\r\n");
    if (head < 0)
        return;
    qsizetype length = 0;
    for (const auto &line : request.first(head).split('\n')) {
        if (line.toLower().startsWith("content-length:"))
            length = line.mid(15).trimmed().toLongLong();
    }
    if (request.size() < head + 4 + length)
        return;
    client->readAll();
    const QByteArray body = request.mid(head + 4, length);
    const bool isReport = request.startsWith("POST");
    if (isReport)
        m_report = QJsonDocument::fromJson(body).object();
    const QByteArray content =
        isReport ? QJsonDocument(m_order).toJson(QJsonDocument::Compact) : QByteArray(page);
    client->write("HTTP/1.1 200 OK\r\nConnection: close\r\nCache-Control: no-store\r\n"
                  "Content-Type: " +
                  QByteArray(isReport ? "application/json" : "text/html; charset=utf-8") +
                  "\r\nContent-Length: " + QByteArray::number(content.size()) + "\r\n\r\n" +
                  content);
    client->disconnectFromHost();
}

} // namespace nivora::test
