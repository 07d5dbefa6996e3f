#include "demo.h"

#include "localcloud/phrase_book.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>

#include <X11/keysym.h>

#include <cstdio>

namespace nivora {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using test::Clock;
using test::waitUntil;

namespace {

constexpr auto patience = 10s;

const auto sentence = u"请发一下报价"_s;
const auto token = u"demonstration"_s;
const QByteArray clipboardText = "what was on the clipboard before";
const QByteArray clipboardPage = "<p>what was on the <b>clipboard</b> before</p>";

QString beside(const QString &program)
{
    return QCoreApplication::applicationDirPath() + u'/' + program;
}

} // namespace

bool Demo::run()
{
    return prepare() && translate() && replace();
}

bool Demo::prepare()
{
    m_expected =
        localcloud::PhraseBook().lookUp(sentence, localcloud::Tongue::Japanese).value_or(QString());

    const bool started = m_session.start({.keyring = true});
    if (!step(started, u"a desktop of its own is up"_s, m_session.error()))
        return false;
    m_user.emplace(m_session.displayName());
    m_tree.emplace(m_session.accessibilityBusAddress());
    m_clipboard.emplace(m_session);
    m_product.emplace(m_session, *m_user, *m_tree);
    m_editor.emplace(m_session, *m_user, *m_tree);

    auto *cloud = m_session.launch(
        beside(u"localcloud"_s),
        {u"--port"_s, QString::number(m_options.cloud.port()), u"--token"_s, token});
    const bool listens =
        cloud &&
        waitUntil([&] { return cloud->canReadLine() || cloud->state() == QProcess::NotRunning; },
                  patience) &&
        cloud->canReadLine();
    if (!step(listens, u"the translation service listens on "_s + m_options.cloud.toString(),
              cloud ? QString::fromUtf8(m_session.errorOutput(cloud)) : m_session.error()))
        return false;

    auto *keyring =
        m_session.launch(u"secret-tool"_s, {u"store"_s, u"--label=Nivora"_s, u"service"_s,
                                            u"app.nivora"_s, u"account"_s, u"session-token"_s});
    if (keyring) {
        keyring->write(token.toUtf8());
        keyring->closeWriteChannel();
        waitUntil([&] { return keyring->state() == QProcess::NotRunning; }, patience);
    }
    const bool stored = keyring && keyring->state() == QProcess::NotRunning &&
                        keyring->exitStatus() == QProcess::NormalExit && keyring->exitCode() == 0;
    if (!step(stored, u"a session token lies in the keyring"_s,
              keyring ? QString::fromUtf8(m_session.errorOutput(keyring)) : m_session.error()))
        return false;

    const bool runs =
        m_product->start({{u"hasCompletedOnboarding"_s, true}, {u"useCustomBackend"_s, false}});
    if (!step(runs, u"Nivora runs"_s, m_product->log()))
        return false;

    const bool offered =
        m_clipboard->offer({{"UTF8_STRING", clipboardText}, {"text/html", clipboardPage}});
    if (!step(offered, u"another program has something on the clipboard"_s))
        return false;

    const bool open = m_editor->open(test::Editor::Toolkit::Gtk, sentence);
    if (!step(open, u"an editor shows: "_s + sentence))
        return false;
    return step(m_editor->selectAll(), u"the sentence is selected"_s,
                u"selected is: "_s + m_editor->selectedText());
}

bool Demo::translate()
{
    m_user->tapShiftTwice();
    step(true, u"Shift is tapped twice"_s);

    const auto panel = m_product->waitForPanel(patience);
    if (!step(panel.has_value(), u"the panel is on the screen"_s, m_product->log()))
        return false;
    const bool translated = m_product->waitForTranslation(m_expected, patience);
    if (!step(translated, u"the panel shows: "_s + m_expected,
              u"it shows: "_s + m_product->translation() + u'\n' + m_product->dump()))
        return false;

    QDir().mkpath(QFileInfo(m_options.screenshot).absolutePath());
    const bool saved = m_session.screenshot().save(m_options.screenshot);
    return step(saved, u"the screen is saved as "_s + m_options.screenshot);
}

bool Demo::replace()
{
    m_user->press({XK_Control_L, XK_Return});
    step(true, u"the primary key is pressed"_s);

    if (!step(m_product->waitForPanelGone(patience), u"the panel is gone"_s))
        return false;
    if (!step(m_editor->waitForText(m_expected, patience), u"the editor shows: "_s + m_expected,
              u"it shows: "_s + m_editor->text()))
        return false;

    const bool restored = waitUntil(
        [&] {
            return m_clipboard->read("UTF8_STRING") == clipboardText &&
                   m_clipboard->read("text/html") == clipboardPage;
        },
        patience);
    return step(restored, u"the clipboard holds what it held before"_s,
                u"it holds: "_s + m_clipboard->text().value_or(u"nothing"_s));
}

bool Demo::step(bool held, const QString &what, const QString &whyNot)
{
    const auto now = Clock::now();
    std::printf("%7.1f ms  %s%s\n", test::millisecondsBetween(m_stepStart, now),
                held ? "" : "FAILED: ", qUtf8Printable(what));
    if (!held && !whyNot.trimmed().isEmpty())
        std::printf("            %s\n", qUtf8Printable(whyNot.trimmed()));
    std::fflush(stdout);
    m_stepStart = now;
    return held;
}

} // namespace nivora
