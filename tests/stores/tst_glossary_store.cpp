#include "stores/glossary_store.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto twoTerms = "[\n"
                      "  {\n"
                      "    \"id\" : \"0A1B2C3D-0000-4000-8000-00000000000F\",\n"
                      "    \"ja\" : \"見積もり\\/\\\"価格\\\"\",\n"
                      "    \"zh\" : \"报价\\n\\u0001\"\n"
                      "  },\n"
                      "  {\n"
                      "    \"id\" : \"0A1B2C3D-0000-4000-8000-000000000001\",\n"
                      "    \"ja\" : \"\",\n"
                      "    \"zh\" : \"甲\"\n"
                      "  }\n"
                      "]"_ba;

} // namespace

class TestGlossaryStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsWrittenBeforeTheFirstChange();
    void theFileKeepsItsFormAndOrder();
    void changesAreKeptAtOnce();
    void filesAreTakenWholeOrNotAtAll_data();
    void filesAreTakenWholeOrNotAtAll();
    void aRejectedFileIsKeptBesideTheNewOne();
    void whatCannotBeWrittenStaysInMemory();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;

    QByteArray content(const QString &suffix = {}) const
    {
        QFile file(m_path + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "no file"_ba;
    }

    void write(const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->path() + u"/app.nivora/glossary.json"_s;
    }
};

void TestGlossaryStore::nothingIsWrittenBeforeTheFirstChange()
{
    GlossaryStore store(m_path);
    QVERIFY(store.terms().empty());
    store.remove(QUuid::createUuid());
    QVERIFY(QDir(m_folder->path()).isEmpty());
    QVERIFY(store.add() != store.add());
    QVERIFY(GlossaryStore(m_path).terms() == store.terms());
    QCOMPARE(store.terms().size(), 2u);

    const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QCOMPARE(QFile::permissions(m_path) & (ownerOnly | others), ownerOnly);
    QCOMPARE(QFile::permissions(QFileInfo(m_path).path()) & others, QFile::Permissions());
}

void TestGlossaryStore::theFileKeepsItsFormAndOrder()
{
    write(twoTerms);
    QFile::setPermissions(m_path, QFile::Permissions(0x6666));
    GlossaryStore store(m_path);
    QCOMPARE(store.terms().size(), 2u);
    QCOMPARE(store.terms()[0].ja, u"見積もり/\"価格\""_s);
    QCOMPARE(store.terms()[0].zh, u"报价\n\u0001"_s);
    store.remove(store.add());
    QCOMPARE(content(), twoTerms);
    QVERIFY(!(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther)));
}

void TestGlossaryStore::changesAreKeptAtOnce()
{
    write(twoTerms);
    GlossaryStore store(m_path);
    QSignalSpy changed(&store, &GlossaryStore::changed);
    GlossaryTerm term = store.terms()[1];
    store.update(term); // says what is there already
    QCOMPARE(changed.count(), 0);
    term.ja = u"\U0001F600乙"_s;
    store.update(term);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(GlossaryStore(m_path).terms().at(1), term);
    store.remove(store.terms()[0].id);
    QVERIFY(GlossaryStore(m_path).terms() == std::vector{term});
}

void TestGlossaryStore::filesAreTakenWholeOrNotAtAll_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<bool>("taken");
    const auto id = "\"0A1B2C3D-0000-4000-8000-000000000001\""_ba;
    QTest::newRow("small letters") << id << id.toLower() << true;
    QTest::newRow("further member") << "\"ja\" : \"\""_ba
                                    << "\"ja\":\"\",\"en\":1"_ba << true;
    QTest::newRow("plain slash") << "\\/"_ba
                                 << "/"_ba << true;
    QTest::newRow("missing member") << "\"ja\" : \"\","_ba
                                    << ""_ba << false;
    QTest::newRow("null member") << "\"ja\" : \"\""_ba
                                 << "\"ja\":null"_ba << false;
    QTest::newRow("no UUID") << id << "\"1\""_ba << false;
    QTest::newRow("more than a UUID") << id << id.chopped(1) + "0\"" << false;
    QTest::newRow("one comma too many") << "\"甲\""_ba
                                        << "\"甲\","_ba << false;
    QTest::newRow("an object") << "["_ba
                               << "{\"terms\":["_ba << false;
    QTest::newRow("no UTF-8") << "甲"_ba
                              << "\xff\xfe"_ba << false;
}

void TestGlossaryStore::filesAreTakenWholeOrNotAtAll()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(bool, taken);
    QByteArray bytes = twoTerms;
    QVERIFY(bytes.contains(from));
    write(bytes.replace(from, to));
    QCOMPARE(GlossaryStore(m_path).terms().size(), taken ? 2u : 0u);
    QCOMPARE(content(), bytes);
}

void TestGlossaryStore::aRejectedFileIsKeptBesideTheNewOne()
{
    const QByteArrayList rejected{"[years of terms,]"_ba, "[a few terms,]"_ba};
    for (const QByteArray &bytes : rejected) {
        write(bytes);
        GlossaryStore store(m_path);
        store.add();
        store.add();
        QCOMPARE(GlossaryStore(m_path).terms().size(), 2u);
    }
    QCOMPARE(content(u".rejected"_s), rejected[0]);
    QCOMPARE(content(u".rejected-2"_s), rejected[1]);
    QVERIFY(!QFile::exists(m_path + u".rejected-3"_s));
}

void TestGlossaryStore::whatCannotBeWrittenStaysInMemory()
{
    QFile(m_folder->path() + u"/app.nivora"_s).open(QIODevice::WriteOnly); // no folder
    GlossaryStore store(m_path);
    store.add();
    QCOMPARE(store.terms().size(), 1u);
}

QTEST_GUILESS_MAIN(TestGlossaryStore)
#include "tst_glossary_store.moc"
