#include "session_test.h"

#include "stores/glossary_store.h"
#include "stores/history_store.h"

#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using localcloud::eventStream;

// What a request carries beside its text, and when there is no request at all:
// the session with the real stores.
class TestTranslationReuse : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        start();
        m_history.reset();
        m_folder = std::make_unique<QTemporaryDir>();
        m_history =
            std::make_unique<HistoryStore>([this] { return m_settings->saveHistory.value(); },
                                           m_folder->filePath(u"Nivora/history.sqlite"_s));
        m_glossary = std::make_unique<GlossaryStore>(m_folder->filePath(u"glossary.json"_s));
        const auto list = m_session->historyRecorder;
        m_session->historyRecorder = [this, list](const QString &source, const QString &translation,
                                                  Language from, Language to) {
            list(source, translation, from, to);
            m_history->record(source, translation, from, to);
        };
        m_session->historyLookup = [this](const QString &source, Language target) {
            return m_history->latestTranslation(source, target);
        };
        m_session->glossaryProvider = [this] { return m_glossary->terms(); };
    }

    void stylesReachJapaneseRequestsOnly_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QJsonValue>("style");
        QTest::newRow("polite") << u"polite"_s << u"报价"_s << QJsonValue(u"礼貌、丁寧語"_s);
        QTest::newRow("business") << u"business"_s << u"报价"_s
                                  << QJsonValue(u"商务敬语、ビジネス文体"_s);
        QTest::newRow("normal") << u"normal"_s << u"报价"_s << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("unknown") << u"x"_s << u"报价"_s << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("into Chinese")
            << u"polite"_s << u"hello"_s << QJsonValue(QJsonValue::Undefined);
    }

    void stylesReachJapaneseRequestsOnly()
    {
        QFETCH(QString, raw);
        QFETCH(QString, source);
        m_settings->japaneseStyleRaw.set(raw);
        m_server->enqueue(eventStream({u"x"_s}));
        m_session->setSource(source, true, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        const QJsonObject body = bodyOf(m_server->requests().first());
        QTEST(body.value(u"style"), "style");
    }

    void theSameTextAgainIsAnsweredFromHistory()
    {
        m_server->enqueue(
            eventStream({u"見積"_s, u"もり"_s}, {.usage = localcloud::TokenCounts{1, 1}}));
        m_session->setSource(u"报价"_s, true, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QVERIFY(!m_session->fromHistory());

        m_settings->autoCopyOnFinish.set(true);
        m_settings->saveHistory.set(false);              // keeps what is there in use
        m_settings->japaneseStyleRaw.set(u"business"_s); // so does another style
        QLoggingCategory::setFilterRules(u"app.nivora.translate.debug=true"_s);
        QTest::ignoreMessage(QtDebugMsg, "命中历史复用: chinese→japanese");
        m_session->setSource(u" 报价\n"_s, true, std::nullopt);
        QLoggingCategory::setFilterRules({});
        QCOMPARE(phase(), Phase::Kind::Done);
        QVERIFY(m_session->fromHistory());
        QCOMPARE(m_session->translatedText(), u"見積もり"_s);
        QCOMPARE(m_session->lastTokens(), std::nullopt);
        QCOMPARE(m_desktop->clipboard.text(), u"見積もり"_s); // auto copy holds for a reuse too
        QCOMPARE(m_recorded.size(), 1);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void aReuseEndsTheRunBeforeIt()
    {
        m_history->record(u"报价"_s, u"見積もり"_s, Language::Chinese, Language::Japanese);
        m_server->enqueue(
            eventStream({u"old"_s, u"old"_s}).cutAfter(1, localcloud::step::Silence{}));
        m_session->setSource(u"甲"_s, true, std::nullopt);
        QTRY_COMPARE(m_session->translatedText(), u"old"_s);
        m_session->setSource(u"报价"_s, true, std::nullopt);
        QCOMPARE(m_session->translatedText(), u"見積もり"_s);
        QTRY_COMPARE(m_server->openConnections(), 0);
        QCOMPARE(m_session->translatedText(), u"見積もり"_s);
        QCOMPARE(phase(), Phase::Kind::Done);
        QVERIFY(m_recorded.isEmpty());
    }

    void historyIsNotUsedWhereTheResultMayDiffer_data()
    {
        QTest::addColumn<QString>("background");
        QTest::addColumn<QString>("term");
        QTest::addColumn<Language>("target");
        QTest::addColumn<bool>("reused");
        QTest::newRow("nothing beside the text") << u""_s << u""_s << Language::Japanese << true;
        QTest::newRow("background") << u"前文"_s << u""_s << Language::Japanese << false;
        QTest::newRow("blank background") << u" \n"_s << u""_s << Language::Japanese << true;
        QTest::newRow("matching term") << u""_s << u"报价"_s << Language::Japanese << false;
        QTest::newRow("other term") << u""_s << u"合同"_s << Language::Japanese << true;
        QTest::newRow("other target") << u""_s << u""_s << Language::English << false;
    }

    void historyIsNotUsedWhereTheResultMayDiffer()
    {
        QFETCH(QString, background);
        QFETCH(QString, term);
        QFETCH(Language, target);
        m_history->record(u"报价单"_s, u"旧"_s, Language::Chinese, Language::Japanese);
        m_glossary->update({m_glossary->add(), term, term.isEmpty() ? QString() : u"見積もり"_s});
        m_server->enqueue(eventStream({u"新"_s}));
        m_session->prepareManualInput(true, std::nullopt);
        m_session->selectTarget(target);
        m_session->editContext(background);
        m_session->editSource(u"报价单"_s);
        m_session->translateNow();
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QTEST(m_session->fromHistory(), "reused");
        QCOMPARE(m_session->translatedText(), m_session->fromHistory() ? u"旧"_s : u"新"_s);
        QCOMPARE(m_server->requests().isEmpty(), m_session->fromHistory());
        if (term == u"报价")
            QVERIFY(!bodyOf(m_server->requests().first())[u"glossary"].toArray().isEmpty());
    }

    void anEmptyEntryIsNone()
    {
        m_session->historyLookup = [](const QString &, Language) { return std::optional(u""_s); };
        m_session->setSource(u"报价"_s, true, std::nullopt);
        QCOMPARE(phase(), Phase::Kind::Loading);
        QVERIFY(!m_session->fromHistory());
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<HistoryStore> m_history;
    std::unique_ptr<GlossaryStore> m_glossary;
};

QTEST_GUILESS_MAIN(TestTranslationReuse)
#include "tst_translation_reuse.moc"
