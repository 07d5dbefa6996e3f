#include "stores/glossary_exchange.h"
#include "stores/glossary_store.h"

#include <QFile>
#include <QFileInfo>
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
    void nothingIsWrittenBeforeTheFirstChange()
    {
        GlossaryStore store(m_path);
        QVERIFY(store.terms().empty());
        store.remove(QUuid::createUuid());
        QVERIFY(QDir(m_folder->path()).isEmpty());
        QVERIFY(store.add() != store.add());
        QVERIFY(GlossaryStore(m_path).terms() == store.terms());
        QCOMPARE(store.terms().size(), 2u);

        const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
        const auto others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QCOMPARE(QFile::permissions(m_path) & (ownerOnly | others), ownerOnly);
        QCOMPARE(QFile::permissions(QFileInfo(m_path).path()) & others, QFile::Permissions());
    }

    void theFileKeepsItsFormAndOrder()
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

    void filesAreTakenWholeOrNotAtAll_data()
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

    void filesAreTakenWholeOrNotAtAll()
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

    void aRejectedFileIsKeptBesideTheNewOne()
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

    void whatCannotBeWrittenStaysInMemory()
    {
        QFile(m_folder->path() + u"/app.nivora"_s).open(QIODevice::WriteOnly); // no folder
        GlossaryStore store(m_path);
        store.add();
        QCOMPARE(store.terms().size(), 1u);
    }

    void manyTermsAreWrittenTogether()
    {
        std::vector<GlossaryTerm> terms;
        for (int i = 0; i < 2000; ++i)
            terms.push_back({QUuid::createUuid(), QString::number(i), u"乙"_s});
        {
            GlossaryStore store(m_path);
            store.append(terms);
            QCOMPARE(content(), "no file"_ba);
            QTRY_VERIFY(GlossaryStore(m_path).terms() == terms);
            terms[1999].ja = u"丙"_s;
            store.update(terms[1999]);
        } // before the moment has passed
        QVERIFY(GlossaryStore(m_path).terms() == terms);
    }

    // A view that follows the signals shows what the store holds.
    void changesAreToldByPlace()
    {
        GlossaryStore store(m_path);
        std::vector<GlossaryTerm> shown;
        int writes = 0;
        connect(&store, &GlossaryStore::changed, this, [&] { ++writes; });
        connect(&store, &GlossaryStore::appended, this, [&](int count) {
            shown.insert(shown.end(), store.terms().end() - count, store.terms().end());
        });
        connect(&store, &GlossaryStore::updated, this,
                [&](int place) { shown.at(size_t(place)) = store.terms().at(size_t(place)); });
        connect(&store, &GlossaryStore::removed, this, [&](int first, int last) {
            shown.erase(shown.begin() + first, shown.begin() + last + 1);
        });

        const auto terms = glossaryFromText(u"甲,一\n乙,二\n甲,一\n丙,三\n丁,四\n戊,五"_s);
        QCOMPARE(store.append(terms), 5);
        QCOMPARE(store.append(terms), 0);
        QCOMPARE(writes, 1);
        store.update({store.terms()[1].id, u"乙"_s, u"2"_s});
        const auto id = [&](size_t place) { return store.terms().at(place).id; };
        store.remove({id(0), id(1), id(3), QUuid::createUuid()});
        QCOMPARE(writes, 3);
        QCOMPARE(store.terms().size(), 2u);
        QVERIFY(shown == store.terms());
        QVERIFY(GlossaryStore(m_path).terms() == shown);
        store.remove({id(0), id(1)});
        QCOMPARE(content().simplified(), "[ ]"_ba);
    }

    void termsComeFromOtherPrograms_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("forms"); // of all terms, in turn
        QTest::newRow("our own") << glossaryToCsv({{QUuid(), u"报价,\"单\""_s, u"見\n積"_s}})
                                 << QStringList{u"报价,\"单\""_s, u"見\n積"_s};
        QTest::newRow("a spreadsheet's") << u"报价, 单\t見積\tx\r\n甲\t乙\r\n"_s
                                         << QStringList{u"报价, 单"_s, u"見積"_s, u"甲"_s, u"乙"_s};
        QTest::newRow("one form alone")
            << u"甲\n\n , \n,乙"_s << QStringList{u"甲"_s, u""_s, u""_s, u"乙"_s};
    }

    void termsComeFromOtherPrograms()
    {
        QFETCH(const QString, text);
        QStringList forms;
        for (const GlossaryTerm &term : glossaryFromText(text))
            forms << term.zh << term.ja;
        QTEST(forms, "forms");
    }

    void filesOfUnknownEncodingAreNoText()
    {
        QCOMPARE(exchangeText("\xef\xbb\xbf甲,乙"_ba), u"甲,乙"_s);
        QCOMPARE(exchangeText("\xff\xfe\x32\x75"_ba), u"甲"_s);
        QVERIFY(!exchangeText("\xbc\xd7,\xd2\xd2"_ba)); // GBK
        QVERIFY(!exchangeText("PK\x03\x04\0\0"_ba));    // a spreadsheet itself
    }

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

QTEST_GUILESS_MAIN(TestGlossaryStore)
#include "tst_glossary_store.moc"
