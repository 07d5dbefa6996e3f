#include "stores/settings_store.h"
#include "stores/usage_store.h"

#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_secret_store.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {
const QUrl cloud(u"https://api.nivora.example"_s);

// What a process holds; made anew for each start.
struct Process
{
    explicit Process(memory::MemoryPreferences &preferences, memory::MemorySecretStore &secrets)
        : keychain(secrets)
        , settings(preferences, keychain, cloud)
    {
    }
    KeychainStore keychain;
    SettingsStore settings;
};

// A secret that is nowhere in this program but where the product has put it.
constexpr int secretLength = 60;

char secretAt(int index)
{
    return char('a' + index * 7 % 26);
}

QString secret()
{
    QString text(secretLength, Qt::Uninitialized);
    for (int i = 0; i < secretLength; ++i)
        text[i] = QLatin1Char(secretAt(i));
    return text;
}

// Its places in what the program may write to, as text of this width. The start of a
// block that was freed belongs to the allocator.
template<typename Unit>
int copiesInMemory()
{
    int copies = 0;
    QFile maps(u"/proc/self/maps"_s);
    if (!maps.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : maps.readAll().split('\n')) {
        static const QRegularExpression writable(
            u"^([0-9a-f]+)-([0-9a-f]+) rw.p \\S+ \\S+ 0 *(\\[heap\\]|\\[stack\\])?$"_s);
        const auto range = writable.match(QString::fromLatin1(line));
        if (!range.hasMatch())
            continue;
        const auto *unit = reinterpret_cast<const Unit *>(range.captured(1).toULongLong({}, 16));
        const auto *end = reinterpret_cast<const Unit *>(range.captured(2).toULongLong({}, 16));
        for (; end - unit >= secretLength; ++unit) {
            constexpr int start = 20;
            int known = start;
            while (known < secretLength && unit[known] == Unit(secretAt(known)))
                ++known;
            copies += known == secretLength;
        }
    }
    return copies;
}

} // namespace

class TestSettingsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedAddressesDecideTheBackend_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<std::optional<bool>>("choice");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("custom");
        QTest::addColumn<QUrl>("endpoint");
        const std::optional<bool> none;
        const QString own = u"http://10.0.0.1:8000/v1"_s;
        QTest::newRow("own host") << own << none << own << true << QUrl(own);
        QTest::newRow("own host, switched off")
            << own << std::optional(false) << own << false << cloud;
        QTest::newRow("cloud host")
            << u"https://api.nivora.example/x"_s << none << u""_s << false << cloud;
        QTest::newRow("cloud host in capitals counts as another")
            << u"https://API.nivora.example"_s << none << u"https://API.nivora.example"_s << true
            << QUrl(u"https://api.nivora.example"_s);
        QTest::newRow("no scheme") << u"example.com"_s << none << u""_s << false << cloud;
        QTest::newRow("no host") << u"http://"_s << none << u""_s << false << cloud;
        QTest::newRow("host and port only")
            << u"localhost:8080"_s << none << u""_s << false << cloud;
        QTest::newRow("nonsense") << u"http://[::1"_s << none << u""_s << false << cloud;
        QTest::newRow("chosen without an address")
            << u""_s << std::optional(true) << u""_s << true << cloud;
    }

    void storedAddressesDecideTheBackend()
    {
        QFETCH(QString, address);
        QFETCH(std::optional<bool>, choice);
        m_preferences.set(u"apiBaseURL"_s, address);
        if (choice)
            m_preferences.set(u"useCustomBackend"_s, *choice);
        Process process(m_preferences, m_secrets);
        QTEST(process.settings.apiBaseURLString.value(), "shown");
        QTEST(process.settings.useCustomBackend.value(), "custom");
        QTEST(process.settings.apiBaseURL(), "endpoint");
        QCOMPARE(process.settings.config().cloud, !process.settings.useCustomBackend.value());
        QCOMPARE(m_preferences.string(u"apiBaseURL"_s), address); // left alone on disk
    }

    void tokensNeverCrossBackends()
    {
        Process process(m_preferences, m_secrets);
        QVERIFY(process.settings.config().apiToken.isEmpty());
        // A sign-in takes effect on the next request.
        process.keychain.write(KeychainStore::sessionTokenAccount(), u"session"_s);
        process.settings.setByoApiKey(u"own-key"_s);
        QCOMPARE(*process.settings.config().apiToken, "session"_ba);
        process.settings.useCustomBackend.set(true);
        QCOMPARE(*process.settings.config().apiToken, "own-key"_ba);
        // Without an address the user's form and key go to the cloud's address.
        QCOMPARE(process.settings.config().apiBaseURL, cloud);
        process.settings.setByoApiKey({});
        QVERIFY(process.settings.config().apiToken.isEmpty());
        process.settings.useCustomBackend.set(false);
        process.keychain.write(KeychainStore::sessionTokenAccount(), std::nullopt);
        QVERIFY(process.settings.config().apiToken.isEmpty());
    }

    void aKeyTypedInLivesInTheKeychainAlone()
    {
        Process process(m_preferences, m_secrets);
        process.settings.setByoApiKey(u"schlüssel"_s);
        QCOMPARE(**m_secrets.read(u"app.nivora"_s, u"byo-api-key"_s).secret, "schlüssel"_ba);
        QCOMPARE(m_preferences.keys(), QStringList{});
        QCOMPARE(Process(m_preferences, m_secrets).settings.byoApiKey(), u"schlüssel"_s);
        process.settings.setByoApiKey({});
        QCOMPARE(m_secrets.count(), 0);

        // A keychain that loses what is written: the key stands for this process.
        m_secrets.setAvailable(false);
        process.settings.setByoApiKey(u"kept"_s);
        QCOMPARE(process.settings.byoApiKey(), u"kept"_s);
    }

    void whatWasASecretIsOverwritten_data()
    {
        QTest::addColumn<bool>("cloud");
        QTest::newRow("a session token") << true;
        QTest::newRow("a key of one's own") << false;
    }

    void whatWasASecretIsOverwritten()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("The sanitizer's own memory is too large to search.");
#endif
        QFETCH(const bool, cloud);
        {
            Process process(m_preferences, m_secrets);
            process.settings.useCustomBackend.set(!cloud);
            if (cloud)
                process.keychain.write(KeychainStore::sessionTokenAccount(), secret());
            else
                process.settings.setByoApiKey(secret());
            const TranslationConfig config = process.settings.config();
            QCOMPARE((*config.apiToken).size(), secretLength);
            QVERIFY(copiesInMemory<char>() > 0);
            m_secrets.clear();
        }
        QCOMPARE(copiesInMemory<char>(), 0);
        QCOMPARE(copiesInMemory<char16_t>(), 0);
    }

    void theInterfaceLanguageIsHandedToThePlatform()
    {
        Process process(m_preferences, m_secrets);
        process.settings.appLanguageRaw.set(u"ja"_s);
        QCOMPARE(m_preferences.strings(u"AppleLanguages"_s), QStringList{u"ja"_s});
        process.settings.appLanguageRaw.set(u"system"_s);
        QVERIFY(!m_preferences.value(u"AppleLanguages"_s));
        QCOMPARE(m_preferences.string(u"appLanguage"_s), u"system"_s);
    }

    void unusableTimeoutsAreBounded()
    {
        Process process(m_preferences, m_secrets);
        for (const auto &[seconds, bounded] :
             {std::pair(0.5, 500), {1e-9, 1}, {1e300, std::numeric_limits<int>::max()}}) {
            process.settings.requestTimeoutSec.set(seconds);
            QCOMPARE(process.settings.config().requestTimeout.count(), bounded);
        }
    }

    void usageAddsUpFromTheFirstReport()
    {
        const QDateTime before = QDateTime::currentDateTimeUtc();
        QDateTime since;
        {
            UsageStore usage(m_preferences);
            QCOMPARE(usage.requestCount(), 0);
            QVERIFY(usage.since() >= before);
            QCOMPARE(m_preferences.writes(), 0);
            usage.record({0, 0});
            usage.record({10, 4});
            since = usage.since();
        }
        UsageStore again(m_preferences);
        QCOMPARE(again.requestCount(), 2);
        QCOMPARE(again.promptTokens(), 10);
        QCOMPARE(again.completionTokens(), 4);
        QCOMPARE(again.since(), since);
        again.record({std::numeric_limits<qint64>::max(), 0});
        QCOMPARE(again.promptTokens(), std::numeric_limits<qint64>::max());
        again.reset();
        QCOMPARE(again.requestCount(), 0);
        QCOMPARE(m_preferences.integer(u"usagePromptTokens"_s), 0);
        QVERIFY(m_preferences.date(u"usageSince"_s) >= since);
    }

    void secretsThatAreNoTextAreAbsent()
    {
        KeychainStore keychain(m_secrets);
        m_secrets.write(u"app.nivora"_s, u"session-token"_s, "\xff\xfe"_ba);
        QVERIFY(!keychain.read(KeychainStore::sessionTokenAccount()));
        keychain.write(KeychainStore::sessionTokenAccount(), u""_s);
        QCOMPARE(m_secrets.count(), 0);
    }

    void whatIsStoredElsewhereIsTakenOver()
    {
        Process process(m_preferences, m_secrets);
        SettingsStore &settings = process.settings;
        settings.apiBaseURLString.set(u"half-typ"_s); // no address yet, and nobody's change
        QSignalSpy themes(&settings.themeModeRaw, &SettingNotifier::changed);
        m_preferences.setElsewhere(u"themeMode"_s, u"dark"_s);
        m_preferences.setElsewhere(u"requestTimeoutSec"_s, -1.0);
        QTRY_COMPARE(settings.themeModeRaw.value(), u"dark"_s);
        QCOMPARE(themes.count(), 1);
        QCOMPARE(settings.requestTimeoutSec.value(), 120.0);
        QCOMPARE(settings.apiBaseURLString.value(), u"half-typ"_s);
        m_preferences.setElsewhere(u"apiBaseURL"_s, u"http://10.0.0.1"_s);
        QTRY_VERIFY(settings.useCustomBackend.value());
        QCOMPARE(settings.apiBaseURL(), QUrl(u"http://10.0.0.1"_s));
        QCOMPARE(m_preferences.writes(), 1);
    }

private:
    memory::MemoryPreferences m_preferences;
    memory::MemorySecretStore m_secrets;

private Q_SLOTS:
    void init()
    {
        m_preferences = {};
        m_secrets.clear();
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settings_store.moc"
