#include "platform_linux/secret_libsecret_store.h"

#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QRegularExpression>
#include <QTest>

#include <X11/keysym.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using linuxdesktop::LibsecretStore;
using test::Clock;
using test::millisecondsBetween;

namespace {
const auto service = u"app.nivora"_s;
const auto account = u"byo-api-key"_s;

// Without waiting in vain, which takes 90 ms. In milliseconds.
constexpr double atOnce = 85;

const auto isDialog = test::X11Driver::ofClass(u"Gcr-prompter"_s);

// Absent, or what an unanswered question gives.
const auto unknown = "(unknown)"_ba;

std::optional<QByteArray> read(LibsecretStore &store, const QString &name = account)
{
    const auto answer = store.read(service, name);
    if (!answer.isKnown)
        return unknown;
    return answer.secret ? std::optional(**answer.secret) : std::nullopt;
}

} // namespace

class tst_secret_libsecret_store : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.keyring = true}), qPrintable(m_session.error()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toLocal8Bit());
        QDBusConnection::connectToBus(m_session.busAddress(), u"test"_s);
        QVERIFY(m_session.launch(u"/usr/libexec/gcr-prompter"_s));
        QTRY_VERIFY(owner(u"org.gnome.keyring.SystemPrompter"_s) != 0);
    }

    void cleanup()
    {
        LibsecretStore store;
        store.remove(service, account);
    }

    // The first of all: what is loaded stays.
    void nothingIsLoadedBeforeThereIsSomethingToRead()
    {
        const auto isLoaded = [] {
            QFile maps(u"/proc/self/maps"_s);
            return !maps.open(QIODevice::ReadOnly) || maps.readAll().contains("libsecret-1");
        };
        LibsecretStore store;
        QVERIFY(!read(store));
        store.remove(service, account);
        QVERIFY(!read(store) && !isLoaded());
        QVERIFY(secretTool({u"store"_s, u"--label=by hand"_s}, "from outside"_ba).has_value());
        QTRY_COMPARE(read(store), "from outside"_ba);
        QVERIFY(isLoaded());
    }

    void readsWhatSecretToolStored()
    {
        QVERIFY(secretTool({u"store"_s, u"--label=by hand"_s}, "from outside"_ba).has_value());
        LibsecretStore store;
        QTRY_COMPARE(read(store), "from outside"_ba);

        // An update keeps the item, and makes no second one.
        store.write(service, account, "changed"_ba);
        QTRY_COMPARE(lookup(), "changed"_ba);
        const auto found = secretTool({u"search"_s, u"--all"_s});
        QVERIFY(found);
        QCOMPARE(found->count("label = "), 1);
        QVERIFY(found->contains("label = by hand"));
    }

    void quickChangesEndInTheLastOne()
    {
        LibsecretStore store;
        for (int i = 0; i < 20; ++i) {
            store.write(service, account, QByteArray::number(i));
            QTRY_COMPARE(read(store), QByteArray::number(i));
        }
        QTRY_COMPARE(lookup(), "19"_ba);
        store.remove(service, account);
        QTRY_VERIFY(!lookup());
    }

    void leavingFinishesTheWrite()
    {
        LibsecretStore().write(service, account, "last words"_ba);
        QCOMPARE(lookup(), "last words"_ba);
    }

    void stoppedKeyringCostsOneBoundedWait()
    {
        LibsecretStore store;
        store.write(service, account, "kept"_ba);
        QTRY_COMPARE(lookup(), "kept"_ba);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Keyring: no answer"_s));
        int answers = 0;
        const platform::Task watch = store.watch([&] { ++answers; });
        const Stopped stopped(keyringProcess());
        for (const double wait : {90., 90., 60., 0.}) {
            QCOMPARE(timedRead(store, wait, 100), unknown);
            for (int i = 0; i < 10; ++i)
                QCOMPARE(timedRead(store, 0, 5), unknown);
            QCoreApplication::processEvents(); // the next turn
        }
        // What was just written is known without the keyring.
        store.write(service, account, "new"_ba);
        QCOMPARE(timedRead(store, 0, 5), "new"_ba);
        stopped.resume();
        QTRY_COMPARE(lookup(), "new"_ba);
        QTRY_COMPARE(read(store), "new"_ba);
        QTRY_COMPARE(answers, 1);
    }

    void leavingAStoppedKeyringIsBounded()
    {
        auto store = std::make_unique<LibsecretStore>();
        store->write(service, account, "kept"_ba);
        QTRY_COMPARE(lookup(), "kept"_ba);
        const Stopped stopped(keyringProcess());
        store->write(service, account, "too late"_ba);
        const auto start = Clock::now();
        store.reset();
        QVERIFY(millisecondsBetween(start, Clock::now()) < 400);
    }

    void restartedKeyringIsFoundAgain()
    {
        LibsecretStore store;
        store.write(service, account, "kept"_ba);
        QTRY_COMPARE(lookup(), "kept"_ba);
        endKeyring();
        QCOMPARE(timedRead(store, 0, atOnce), unknown);

        startKeyring();
        QTRY_COMPARE(read(store), "kept"_ba);
    }

    void lockedKeyringIsAbsentAtOnceAndOpensOnRequest()
    {
        LibsecretStore store;
        store.write(service, account, "kept"_ba);
        QTRY_COMPARE(lookup(), "kept"_ba);
        lockKeyring();

        QCOMPARE(timedRead(store, 0, atOnce), unknown);
        store.write(service, account, "while locked"_ba);
        store.write(service, u"session-token"_s, "a second one"_ba);
        QVERIFY(!timedRead(store, u"another"_s, 0, atOnce));

        test::X11Driver person(m_session.displayName());
        answerDialog(person, {"a password for tests"_ba});
        QVERIFY(person.waitForGone(isDialog, 10s));
        QTRY_COMPARE(lookup(), "while locked"_ba);
        QTRY_COMPARE(lookup(u"session-token"_s), "a second one"_ba);
        QCOMPARE(read(store), "while locked"_ba);

        // Asked once, never again.
        lockKeyring();
        QCOMPARE(timedRead(store, 0, atOnce), unknown);
        store.write(service, account, "lost"_ba);
        QTRY_COMPARE(timedRead(store, 0, atOnce), unknown);
        QVERIFY(!person.waitForMapped(isDialog, 500ms));
        restartKeyring();
        store.remove(service, u"session-token"_s);
    }

    void firstKeyringIsMadeOnRequest()
    {
        endKeyring();
        auto environment = m_session.environment();
        environment.insert(u"XDG_DATA_HOME"_s, m_session.folder() + u"/nothing-yet"_s);
        QVERIFY(m_session.launch(u"gnome-keyring-daemon"_s,
                                 {u"--foreground"_s, u"--components=secrets"_s}, environment));
        QTRY_VERIFY(keyringProcess() != 0);
        LibsecretStore store;
        QVERIFY(!timedRead(store, 0, atOnce));
        store.write(service, account, "the first"_ba);

        test::X11Driver person(m_session.displayName());
        answerDialog(person, {"new"_ba, "new"_ba});
        QTRY_COMPARE(lookup(), "the first"_ba);
        restartKeyring();
    }

    void leavingWhileTheDialogIsOpenIsBounded()
    {
        auto store = std::make_unique<LibsecretStore>();
        store->write(service, account, "kept"_ba);
        QTRY_COMPARE(lookup(), "kept"_ba);
        lockKeyring();
        QCOMPARE(timedRead(*store, 0, atOnce), unknown);
        test::X11Driver person(m_session.displayName());
        QVERIFY(person.waitForMapped(isDialog, 10s));
        const auto start = Clock::now();
        store.reset();
        QVERIFY(millisecondsBetween(start, Clock::now()) < 400);
        restartKeyring();
    }

    void withoutAKeyringOnTheBusItIsAbsentInMilliseconds()
    {
        endKeyring();
        {
            LibsecretStore store;
            QCOMPARE(timedRead(store, 0, atOnce), unknown);
            store.write(service, account, "x"_ba);
            QTRY_COMPARE(timedRead(store, 0, atOnce), unknown);
        }
        startKeyring();
    }

    void withoutItsModuleItIsAbsentInMilliseconds()
    {
        QVERIFY(secretTool({u"store"_s, u"--label=by hand"_s}, "from outside"_ba).has_value());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^No keyring: "_s));
        LibsecretStore store(m_session.folder() + u"/keyring.so"_s);
        QCOMPARE(timedRead(store, 0, atOnce), unknown);
    }

    void withoutABusItIsAbsentInMilliseconds()
    {
        const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
        qunsetenv("XDG_RUNTIME_DIR");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        {
            LibsecretStore store;
            QCOMPARE(timedRead(store, 0, atOnce), unknown);
            store.write(service, account, "x"_ba);
            QTRY_COMPARE(timedRead(store, 0, atOnce), unknown);
        }
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toLocal8Bit());
        if (!runtime.isEmpty())
            qputenv("XDG_RUNTIME_DIR", runtime);
    }

private:
    // A process that is stopped for as long as the object lives.
    class Stopped
    {
    public:
        explicit Stopped(pid_t process)
            : m_process(process)
        {
            ::kill(process, SIGSTOP);
        }
        ~Stopped() { resume(); }
        void resume() const { ::kill(m_process, SIGCONT); }

    private:
        pid_t m_process;
    };

    static QDBusConnection bus() { return QDBusConnection(u"test"_s); }

    // 0 when nobody has the name.
    static pid_t owner(const QString &name)
    {
        auto ask = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                                  u"org.freedesktop.DBus"_s,
                                                  u"GetConnectionUnixProcessID"_s);
        ask << name;
        const QDBusReply<uint> process = bus().call(ask);
        return process.isValid() ? static_cast<pid_t>(process.value()) : 0;
    }

    static pid_t keyringProcess() { return owner(u"org.freedesktop.secrets"_s); }

    static void lockKeyring()
    {
        auto lock = QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s,
                                                   u"/org/freedesktop/secrets"_s,
                                                   u"org.freedesktop.Secret.Service"_s, u"Lock"_s);
        lock << QVariant::fromValue(
            QList{QDBusObjectPath(u"/org/freedesktop/secrets/aliases/default"_s)});
        QCOMPARE(bus().call(lock).type(), QDBusMessage::ReplyMessage);
    }

    void startKeyring()
    {
        auto *keyring =
            m_session.launch(u"gnome-keyring-daemon"_s,
                             {u"--foreground"_s, u"--unlock"_s, u"--components=secrets"_s});
        QVERIFY(keyring);
        keyring->write("a password for tests");
        keyring->closeWriteChannel();
        QTRY_VERIFY(keyringProcess() != 0);
    }

    static void endKeyring()
    {
        ::kill(keyringProcess(), SIGTERM);
        QTRY_COMPARE(keyringProcess(), 0);
    }

    void restartKeyring()
    {
        endKeyring();
        startKeyring();
    }

    // Fills in one field after the other.
    static void answerDialog(test::X11Driver &person, const QByteArrayList &fields)
    {
        const auto dialog = person.waitForMapped(isDialog, 10s);
        QVERIFY(dialog);
        QVERIFY(person.waitForActive(dialog->id, 5s));
        for (const QByteArray &field : fields) {
            for (const char key : field)
                person.press({static_cast<quint32>(key)});
            person.press({quint32(&field == &fields.last() ? XK_Return : XK_Tab)});
        }
    }

    static std::optional<QByteArray> timedRead(LibsecretStore &store, const QString &name,
                                               double from, double to)
    {
        const auto start = Clock::now();
        auto secret = read(store, name);
        const auto took = millisecondsBetween(start, Clock::now());
        if (took < from || took > to)
            QTest::qFail(qPrintable(u"a read took %1 ms"_s.arg(took)), __FILE__, __LINE__);
        return secret;
    }

    static std::optional<QByteArray> timedRead(LibsecretStore &store, double from, double to)
    {
        return timedRead(store, account, from, to);
    }

    std::optional<QByteArray> lookup(const QString &name = account)
    {
        return secretTool({u"lookup"_s}, {}, name);
    }

    // Its output; absent when it failed.
    std::optional<QByteArray> secretTool(QStringList arguments, const QByteArray &input = {},
                                         const QString &name = account)
    {
        QProcess tool;
        tool.setProcessEnvironment(m_session.environment());
        tool.start(u"secret-tool"_s, arguments << u"service"_s << service << u"account"_s << name);
        tool.write(input);
        tool.closeWriteChannel();
        if (!tool.waitForFinished(5000) || tool.exitCode() != 0)
            return std::nullopt;
        return tool.readAllStandardOutput() + tool.readAllStandardError();
    }

    test::DesktopSession m_session;
};

QTEST_GUILESS_MAIN(tst_secret_libsecret_store)
#include "tst_secret_libsecret_store.moc"
