#include "platform_linux/json_preferences.h"
#include "platform_memory/memory_preferences.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using platform::PreferenceChange;
using platform::Preferences;
using platform::PreferenceValue;

// What every store of preferences does, real or not.
class tst_contract_preferences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("real");
        QTest::newRow("memory") << false;
        QTest::newRow("file") << true;
    }

    void init()
    {
        QFETCH_GLOBAL(const bool, real);
        m_folder = std::make_unique<QTemporaryDir>();
        if (real)
            m_store = std::make_unique<linuxdesktop::JsonPreferences>(
                m_folder->filePath(u"defaults.json"_s));
        else
            m_store = std::make_unique<memory::MemoryPreferences>();
    }

    void absentKeyIsAbsentInEveryType()
    {
        QVERIFY(!m_store->value(u"key"_s));
        m_store->remove(u"key"_s);
        QVERIFY(!m_store->boolean(u"key"_s) && !m_store->integer(u"key"_s) &&
                !m_store->number(u"key"_s) && !m_store->string(u"key"_s) &&
                !m_store->strings(u"key"_s) && !m_store->date(u"key"_s));
    }

    void eachTypeIsTakenForItselfAlone_data()
    {
        QTest::addColumn<PreferenceValue>("value");
        QTest::addColumn<QString>("types");
        QTest::newRow("true") << PreferenceValue(true) << u"b"_s;
        QTest::newRow("one") << PreferenceValue(qint64{1}) << u"in"_s;
        QTest::newRow("real") << PreferenceValue(-1.75) << u"in"_s;
        QTest::newRow("text") << PreferenceValue(u"true"_s) << u"s"_s;
        QTest::newRow("texts") << PreferenceValue(QStringList{u"a"_s}) << u"l"_s;
        QTest::newRow("date") << PreferenceValue(QDateTime::fromMSecsSinceEpoch(1500, Qt::UTC))
                              << u"d"_s;
    }

    void eachTypeIsTakenForItselfAlone()
    {
        QFETCH(const PreferenceValue, value);
        m_store->set(u"key"_s, value);
        QVERIFY(m_store->value(u"key"_s) == value);
        QString types;
        if (m_store->boolean(u"key"_s))
            types += u'b';
        if (m_store->integer(u"key"_s))
            types += u'i';
        if (m_store->number(u"key"_s))
            types += u'n';
        if (m_store->string(u"key"_s))
            types += u's';
        if (m_store->strings(u"key"_s))
            types += u'l';
        if (m_store->date(u"key"_s))
            types += u'd';
        QTEST(types, "types");
    }

    void realIsCutTowardsZero()
    {
        m_store->set(u"key"_s, -1.75);
        QCOMPARE(m_store->integer(u"key"_s), -1);
        m_store->set(u"key"_s, 1e30);
        QVERIFY(!m_store->integer(u"key"_s));
    }

    void changesApplyInTheirOrder()
    {
        const PreferenceChange changes[] = {
            {u"a"_s, qint64{1}}, {u"b"_s, qint64{2}}, {u"a"_s, std::nullopt}, {u"b"_s, u"two"_s}};
        m_store->apply(changes);
        QVERIFY(!m_store->value(u"a"_s));
        QCOMPARE(m_store->string(u"b"_s), u"two"_s);
        m_store->apply({});
        QCOMPARE(m_store->string(u"b"_s), u"two"_s);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Preferences> m_store;
};

QTEST_GUILESS_MAIN(tst_contract_preferences)
#include "tst_contract_preferences.moc"
