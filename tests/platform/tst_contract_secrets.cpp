#include "platform_linux/secret_libsecret_store.h"
#include "platform_memory/memory_secret_store.h"
#include "support/desktop_session.h"
#include "support/wait.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;

// What every keychain does, real or not.
class tst_contract_secrets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("real");
        QTest::newRow("memory") << false;
        QTest::newRow("keyring") << true;
    }

    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false, .keyring = true}),
                 qPrintable(m_session.error()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toLocal8Bit());
    }

    void init()
    {
        QFETCH_GLOBAL(const bool, real);
        if (real)
            m_store = std::make_unique<linuxdesktop::LibsecretStore>();
        else
            m_store = std::make_unique<memory::MemorySecretStore>();
        for (const auto &account : {u"one"_s, u"two"_s})
            m_store->remove(u"app.nivora"_s, account);
    }

    void writtenIsReadReplacedAndRemoved()
    {
        QVERIFY(!read(u"one"_s));
        for (const auto &secret : {"first"_ba, "\xe4\xbd\xa0 = %s\n"_ba, QByteArray(5000, 'x')}) {
            m_store->write(u"app.nivora"_s, u"one"_s, secret);
            QCOMPARE(read(u"one"_s), secret);
        }
        m_store->remove(u"app.nivora"_s, u"one"_s);
        QVERIFY(!read(u"one"_s));
        m_store->remove(u"app.nivora"_s, u"one"_s);
    }

    void accountsAndServicesAreToldApart()
    {
        m_store->write(u"app.nivora"_s, u"one"_s, "1"_ba);
        m_store->write(u"app.nivora"_s, u"two"_s, "2"_ba);
        QCOMPARE(read(u"one"_s), "1"_ba);
        QCOMPARE(read(u"two"_s), "2"_ba);
        QVERIFY(!m_store->read(u"app.other"_s, u"one"_s).secret);
        m_store->remove(u"app.nivora"_s, u"one"_s);
        QVERIFY(!read(u"one"_s));
        QCOMPARE(read(u"two"_s), "2"_ba);
    }

private:
    std::optional<QByteArray> read(const QString &account)
    {
        platform::SecretAnswer answer;
        const auto isKnown = [&] {
            answer = m_store->read(u"app.nivora"_s, account);
            return answer.isKnown; // once or twice not, on a busy machine
        };
        if (!test::waitUntil(isKnown, 5s))
            QTest::qFail("the keychain does not answer", __FILE__, __LINE__);
        return answer.secret ? std::optional(**answer.secret) : std::nullopt;
    }

    test::DesktopSession m_session;
    std::unique_ptr<platform::SecretStore> m_store;
};

QTEST_GUILESS_MAIN(tst_contract_secrets)
#include "tst_contract_secrets.moc"
