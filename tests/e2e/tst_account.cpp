#include "road.h"

#include "localcloud/account_service.h"
#include "localcloud/accounts.h"
#include "localcloud/cloud_service.h"
#include "localcloud/router.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <X11/keysym.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

std::unique_ptr<QNetworkReply> load(QNetworkReply *started)
{
    std::unique_ptr<QNetworkReply> reply(started);
    waitUntil([&] { return reply->isFinished(); }, patience);
    return reply;
}

// A browser whose user presses the only button of the page, and which leaves
// links of other programs to the desktop.
int browse(const QUrl &page)
{
    QNetworkAccessManager network;
    const QByteArray html = load(network.get(QNetworkRequest(page)))->readAll();
    static const QRegularExpression action(u"action=\"([^\"]*)\""_s);
    QNetworkRequest press(page.resolved(QUrl(action.match(QString::fromUtf8(html)).captured(1))));
    press.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::ManualRedirectPolicy);
    press.setHeader(QNetworkRequest::ContentTypeHeader, "text/plain"_ba);
    const QByteArray link = load(network.post(press, ""_ba))->rawHeader("Location");
    return QProcess::execute(u"xdg-open"_s, {QString::fromLatin1(link)});
}

} // namespace

// The account's life in one desktop session, from an empty home folder on. Each
// step begins where the one before has ended.
class TestAccount : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QUrl endpoint(QStringLiteral(NIVORA_CLOUD_ENDPOINT));
        if (endpoint.host() != "localhost"_L1)
            QSKIP("The product is built for a cloud that is not on this machine.");
        m_accountService.addRoutes(m_router);
        m_cloudService.addRoutes(m_router);
        m_road.server.setHandler([this](const auto &request) { return m_router.handle(request); });
        QVERIFY(m_road.prepare(quint16(endpoint.port())));

        // As packages are installed and users choose their browser.
        const QString folder = m_road.session.folder();
        QByteArray entry = contentOf(QCoreApplication::applicationDirPath() +
                                     u"/../installation/app.nivora.desktop"_s);
        static const QRegularExpression program(u"(?<=\nExec=)\\S+/nivora(?= %u\n)"_s);
        entry = QString::fromUtf8(entry).replace(program, Product::program()).toUtf8();
        QVERIFY(entry.contains("Exec=" + Product::program().toUtf8() + " %u\n"));
        QVERIFY(write(folder + u"/data/applications/app.nivora.desktop"_s, entry));
        QVERIFY(write(folder + u"/data/applications/scripted-browser.desktop"_s,
                      "[Desktop Entry]\nType=Application\nName=Browser\nExec=" +
                          QCoreApplication::applicationFilePath().toUtf8() +
                          " --browse %u\nMimeType=x-scheme-handler/http;\n"));
        QVERIFY(write(folder + u"/config/mimeapps.list"_s,
                      "[Default Applications]\nx-scheme-handler/http=scripted-browser.desktop\n"));
        QVERIFY(run(u"update-desktop-database"_s, {folder + u"/data/applications"_s}));
    }

    void cleanup()
    {
        if (QTest::currentTestFailed())
            qWarning().noquote() << m_road.problem();
    }

    void theFirstMinuteEndsInATranslation()
    {
        QVERIFY(run(u"gdbus"_s,
                    {u"call"_s, u"--session"_s, u"--dest"_s, u"org.a11y.Bus"_s, u"--object-path"_s,
                     u"/org/a11y/bus"_s, u"--method"_s, u"org.freedesktop.DBus.Properties.Set"_s,
                     u"org.a11y.Status"_s, u"IsEnabled"_s, u"<false>"_s}));
        // So that the window can be looked at although it has no permission to look.
        QVERIFY(m_road.product->start({}, {{u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s}}));
        QVERIFY(m_road.waitForWindow(u"onboarding"_s));
        QVERIFY(m_road.product->waitForControl(u"开始"_s, patience));
        m_road.user->tapShiftTwice();

        QVERIFY(m_road.product->waitForControl(u"邮箱"_s, patience));
        m_road.type("me");
        m_road.user->press({XK_Shift_L, XK_2}); // the at sign
        m_road.type("x.org");
        m_road.user->press({XK_Return});
        QVERIFY(m_road.product->waitForControl(u"6 位验证码"_s, patience));
        QNetworkAccessManager network;
        const QUrl mail = m_road.server.url().resolved(QUrl(u"/mail"_s));
        static const QRegularExpression code(u"<td>me@x.org</td>.*<b>(\\d{6})</b>"_s);
        const auto page = QString::fromUtf8(load(network.get(QNetworkRequest(mail)))->readAll());
        QCOMPARE(storedToken(), ""_ba);
        const auto maps = u"/proc/%1/maps"_s.arg(m_road.product->processId());
        QVERIFY(!contentOf(maps).contains("libsecret")); // not before there is a secret
        m_road.type(code.match(page).captured(1).toLatin1());
        m_road.user->press({XK_Return});

        QVERIFY(m_road.press(u"打开系统设置授权…"_s));
        const QByteArray token = storedToken();
        QVERIFY(!token.isEmpty() && contentOf(maps).contains("libsecret"));
        QVERIFY(m_road.product->waitForControl(u"完成"_s, patience));
        m_road.user->press({XK_Return});
        QVERIFY(m_road.waitForGone(u"onboarding"_s));
        translate(u"请发一下报价"_s, token);
        const QString preferences = m_road.session.folder() + u"/config/app.nivora/defaults.json"_s;
        QCOMPARE(placesOf("me@x.org"_ba), QStringList(preferences));
        QVERIFY(
            QJsonDocument::fromJson(contentOf(preferences))[u"hasCompletedOnboarding"_s].toBool());
    }

    void afterASignOutATriggerLeadsToTheSignIn()
    {
        QVERIFY(m_road.ask(u"sign-out"_s));
        QTRY_COMPARE(storedToken(), ""_ba);
        const auto before = m_road.server.requests().size();
        m_road.pull(Trigger::DoubleShift);
        QVERIFY(m_road.waitForWindow(u"login"_s));
        QVERIFY(!m_road.user->find(Product::panel()));
        QCOMPARE(m_road.server.requests().size(), before);
    }

    void theBrowserLeadsBack()
    {
        QVERIFY(m_road.press(u"用 Google 登录"_s));
        QVERIFY(m_road.waitForGone(u"login"_s));
        const QByteArray token = storedToken();
        QVERIFY(!token.isEmpty());
        translate(u"谢谢"_s, token);
    }

    void otherLinksAreDropped_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        const auto link = u"nivora://signed-in?token=foreign&email=other@x.org"_s;
        QTest::newRow("xdg-open") << u"xdg-open"_s << QStringList{link};
        QTest::newRow("gio") << u"gio"_s << QStringList{u"open"_s, link};
        QTest::newRow("a second start") << Product::program() << QStringList{link};
    }

    void otherLinksAreDropped()
    {
        QFETCH(const QString, program);
        QFETCH(const QStringList, arguments);
        const QString line = u"A link that no sign-in waits for was dropped"_s;
        const auto before = m_road.product->log().count(line);
        const QByteArray token = storedToken();
        QVERIFY(run(program, arguments));
        QTRY_COMPARE(m_road.product->log().count(line), before + 1);
        QCOMPARE(storedToken(), token);
        QTRY_COMPARE(placesOf("token=foreign"_ba), QStringList());
    }

    void aStartWithoutTheKeyringForgetsNobody()
    {
        const QByteArray token = storedToken();
        const pid_t process = keyring();
        QVERIFY(!token.isEmpty() && process > 0);
        QCOMPARE(kill(process, SIGSTOP), 0);
        m_road.product.emplace(m_road.session, *m_road.user, *m_road.tree);
        m_road.product->watch();
        QVERIFY(m_road.product->start({}));
        m_road.pull(Trigger::DoubleShift);
        QVERIFY(m_road.waitForWindow(u"login"_s));
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.waitForGone(u"login"_s));
        QCOMPARE(kill(process, SIGCONT), 0);
        translate(u"再见"_s, token);
        QCOMPARE(placesOf("walker@example.com"_ba),
                 QStringList(m_road.session.folder() + u"/config/app.nivora/defaults.json"_s));
        const auto limits = u"/proc/%1/limits"_s.arg(m_road.product->processId());
        QVERIFY(QRegularExpression(u"Max core file size +1 "_s)
                    .match(QString::fromLatin1(contentOf(limits)))
                    .hasMatch());
    }

    void withoutAnAnswerFromTheKeyringNobodyIsAskedToSignInAgain_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("it hangs") << SIGSTOP;
        QTest::newRow("it is gone") << SIGKILL;
    }

    void withoutAnAnswerFromTheKeyringNobodyIsAskedToSignInAgain()
    {
        QFETCH(const int, signal);
        QVERIFY(m_road.editor);
        const pid_t process = keyring();
        QVERIFY(process > 0);
        QCOMPARE(kill(process, signal), 0);
        QVERIFY(m_road.user->waitForActive(m_road.editor->window(), patience));
        m_road.pull(Trigger::DoubleShift);
        QVERIFY(m_road.product->waitForPanel(patience));
        QVERIFY(!m_road.user->find(X11Driver::ofClass(u"Nivora"_s, u"login"_s)));
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.product->waitForPanelGone(patience));
        QCOMPARE(kill(process, SIGCONT), signal == SIGKILL ? -1 : 0);
    }

private:
    bool run(const QString &program, const QStringList &arguments) const
    {
        QProcess process;
        process.setProcessEnvironment(m_road.session.environment());
        process.start(program, arguments);
        return waitUntil([&] { return process.state() == QProcess::NotRunning; }, patience) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    QByteArray storedToken() const { return m_road.secretTool(u"lookup"_s, u"session-token"_s); }
    pid_t keyring() const
    {
        auto bus = QDBusConnection::connectToBus(m_road.session.busAddress(), u"keyring"_s);
        return pid_t(bus.interface()->servicePid(u"org.freedesktop.secrets"_s).value());
    }
    // Where the text can be read: the session's files, and what the processes of
    // this machine show of themselves.
    QStringList placesOf(const QByteArray &text) const
    {
        QStringList paths;
        QDirIterator files(m_road.session.folder(), QDir::Files | QDir::Hidden,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            paths.append(files.next());
        const auto processes = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
        for (const QString &process : processes)
            paths << u"/proc/"_s + process + u"/cmdline"_s << u"/proc/"_s + process + u"/environ"_s;
        paths.removeIf([&](const QString &path) { return !contentOf(path).contains(text); });
        return paths;
    }

    // Of a sentence of the phrase book, in an editor of its own.
    void translate(const QString &sentence, const QByteArray &token)
    {
        const auto expected = localcloud::PhraseBook()
                                  .lookUp(sentence, localcloud::Tongue::Japanese)
                                  .value_or(QString());
        QVERIFY(m_road.open(Editor::Toolkit::Gtk, sentence));
        const auto before = m_road.server.requests().size();
        m_road.pull(Trigger::DoubleShift);
        QVERIFY(m_road.product->waitForPanel(patience));
        QVERIFY(m_road.product->waitForTranslation(expected, patience));
        QVERIFY(m_road.product->waitForControl(u"回译"_s, patience)); // the last request is over
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.product->waitForPanelGone(patience));
        QVERIFY(m_road.user->waitForActive(m_road.editor->window(), patience));
        QByteArrayList paths;
        const auto requests = m_road.server.requests().sliced(before);
        for (const localcloud::Request &request : requests) {
            paths.append(request.path);
            QCOMPARE(request.header("Authorization"), "Bearer " + token);
        }
        QVERIFY(paths.contains("/v1/translate") && paths.contains("/billing/status"));
        QTRY_COMPARE(placesOf(token), QStringList());
        for (const QString &text : {QString::fromLatin1(token), sentence, expected})
            QVERIFY(!m_road.product->log().contains(text));
    }

    Road m_road{{.keyring = true}};
    localcloud::Accounts m_accounts;
    localcloud::AccountService m_accountService{m_accounts};
    localcloud::CloudService m_cloudService{
        {.pieceDelay = 0ms, .upstream = nullptr, .accounts = &m_accounts}};
    localcloud::Router m_router;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && argv[1] == "--browse"_ba)
        return browse(QUrl(QString::fromUtf8(argv[2])));
    TestAccount test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_account.moc"
