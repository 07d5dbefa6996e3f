#include "session/translation_view_model.h"

#include "core/translation_engine.h"
#include "stores/settings_store.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_memory/memory_clipboard.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_secret_store.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;
using localcloud::eventStream;

namespace {

QJsonObject bodyOf(const localcloud::Request &request)
{
    return QJsonDocument::fromJson(request.body).object();
}

} // namespace

// The session with a real engine against a real server.
class TestTranslationViewModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aTextFromOutsideRunsToItsEnd();
    void piecesAreAnnouncedOneByOne();
    void blanksAreNotSent();
    void anErrorKeepsWhatHasArrived();
    void aNewRunSilencesTheOld();
    void everyWayOutOfARunSilencesIt_data();
    void everyWayOutOfARunSilencesIt();
    void theDirectionFollowsTheRule();
    void aChosenTargetStandsUntilTheNextTrigger();
    void aChosenTargetRunsOnlyWhereThereIsSomethingToReplace();
    void typingClearsTheResultWhileLiveTranslationIsOff();
    void liveTranslationWaitsForTheTextToRest();
    void theProgramsOwnTextIsNoEdit();
    void aReplyCarriesTheOthersWordsAsBackground();
    void stylesReachJapaneseRequestsOnly_data();
    void stylesReachJapaneseRequestsOnly();
    void historyIsReusedWithoutARequest();
    void historyIsNotAskedWhereTheResultMayDiffer_data();
    void historyIsNotAskedWhereTheResultMayDiffer();
    void usageAddsUpForOneResult();
    void copyingShowsForAMoment();
    void theMainButtonFollowsTheSituation_data();
    void theMainButtonFollowsTheSituation();
    void aChangeOfSettingsCountsFromTheNextRun();

private:
    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<memory::MemoryPreferences> m_preferences;
    std::unique_ptr<memory::MemorySecretStore> m_secrets;
    std::unique_ptr<memory::MemoryClipboard> m_clipboard;
    std::unique_ptr<KeychainStore> m_keychain;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<TranslationViewModel> m_session;
    QStringList m_recorded;

    Phase::Kind phase() const { return m_session->phase().kind; }
};

void TestTranslationViewModel::init()
{
    m_session.reset();
    m_server = std::make_unique<localcloud::Server>();
    QVERIFY(m_server->listen());
    m_preferences = std::make_unique<memory::MemoryPreferences>();
    m_secrets = std::make_unique<memory::MemorySecretStore>();
    m_clipboard = std::make_unique<memory::MemoryClipboard>();
    m_keychain = std::make_unique<KeychainStore>(*m_secrets);
    m_settings = std::make_unique<SettingsStore>(*m_preferences, *m_keychain, m_server->url());
    m_engine = std::make_unique<TranslationEngine>();
    m_session = std::make_unique<TranslationViewModel>(*m_engine, *m_settings, *m_clipboard);
    m_recorded.clear();
    m_session->historyRecorder = [this](const QString &source, const QString &translation,
                                        Language from, Language to) {
        m_recorded << u"%1|%2|%3|%4"_s.arg(source, translation, rawValue(from), rawValue(to));
    };
}

void TestTranslationViewModel::aTextFromOutsideRunsToItsEnd()
{
    m_server->enqueue(
        eventStream({u"お見積もりを"_s, u"送ってください。"_s},
                    {.usage = localcloud::TokenCounts{12, 7}, .translationId = "id-1"}));
    QSignalSpy phases(m_session.get(), &TranslationViewModel::phaseChanged);
    platform::FocusDiag focus;
    focus.app = u"editor"_s;
    m_session->setSource(u"  请发一下报价\n"_s, true, focus);

    // All that is known at once is there at once, and nothing has called back.
    QCOMPARE(phase(), Phase::Kind::Loading);
    QVERIFY(m_session->isTranslating());
    QCOMPARE(m_session->mode(), PanelMode::Selection);
    QCOMPARE(m_session->sourceText(), u"  请发一下报价\n"_s);
    QCOMPARE(m_session->detectedSource(), Language::Chinese);
    QCOMPARE(m_session->effectiveTarget(), Language::Japanese);
    QCOMPARE(m_session->lastFocusContext()->app, u"editor"_s);

    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(phases.count(), 3); // loading, streaming, done
    QCOMPARE(m_session->translatedText(), u"お見積もりを送ってください。"_s);
    QCOMPARE(m_session->lastTokens(), 19);
    QCOMPARE(m_session->lastTid(), u"id-1"_s);
    QCOMPARE(bodyOf(m_server->requests().first())[u"text"].toString(), u"请发一下报价"_s);
    QCOMPARE(m_recorded,
             QStringList{u"请发一下报价|お見積もりを送ってください。|chinese|japanese"_s});
}

void TestTranslationViewModel::piecesAreAnnouncedOneByOne()
{
    m_server->enqueue(eventStream({u"a"_s, u"b"_s, u"c"_s}));
    QSignalSpy appended(m_session.get(), &TranslationViewModel::translatedTextAppended);
    QSignalSpy replaced(m_session.get(), &TranslationViewModel::translatedTextReplaced);
    m_session->setSource(u"甲"_s, true, std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(appended.count(), 3);
    QCOMPARE(replaced.count(), 0);
}

void TestTranslationViewModel::blanksAreNotSent()
{
    m_session->setSource(u" \n\u3000"_s, true, std::nullopt);
    QCOMPARE(phase(), Phase::Kind::Idle);
    QTest::qWait(50); // long enough for a request to arrive on this machine
    QVERIFY(m_server->requests().isEmpty());
}

void TestTranslationViewModel::anErrorKeepsWhatHasArrived()
{
    m_server->enqueue(
        eventStream({u"一"_s, u"二"_s, u"三"_s}).cutAfter(2, localcloud::step::Reset{}));
    m_session->setSource(u"one two three"_s, true, std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Error);
    QCOMPARE(m_session->phase().message, TranslationError::cannotConnect().errorDescription());
    QCOMPARE(m_session->translatedText(), u"一二"_s);
    QVERIFY(m_recorded.isEmpty());

    // Trying again starts from nothing.
    m_server->enqueue(eventStream({u"一二三"_s}));
    m_session->translateNow();
    QCOMPARE(m_session->translatedText(), QString());
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(m_session->translatedText(), u"一二三"_s);
}

void TestTranslationViewModel::aNewRunSilencesTheOld()
{
    m_server->enqueue(eventStream({u"old"_s, u"old"_s}).cutAfter(1, localcloud::step::Silence{}));
    m_server->enqueue(eventStream({u"new"_s}));
    m_session->setSource(u"甲"_s, true, std::nullopt);
    QTRY_COMPARE(m_session->translatedText(), u"old"_s);
    QSignalSpy closed(m_server.get(), &localcloud::Server::connectionClosed);
    m_session->setSource(u"乙"_s, true, std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(m_session->translatedText(), u"new"_s);
    QTRY_VERIFY(closed.contains(QVariantList{m_server->requests().first().connection}));
    QCOMPARE(m_recorded, QStringList{u"乙|new|chinese|japanese"_s});
}

void TestTranslationViewModel::everyWayOutOfARunSilencesIt_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("manual input") << 0;
    QTest::newRow("reply") << 1;
    QTest::newRow("edit") << 2;
    QTest::newRow("blank source") << 3;
}

void TestTranslationViewModel::everyWayOutOfARunSilencesIt()
{
    QFETCH(int, way);
    m_server->enqueue(eventStream({u"old"_s}).cutAfter(1, localcloud::step::Reset{}, 60ms));
    m_session->setSource(u"甲"_s, true, std::nullopt);
    QTRY_COMPARE(m_session->translatedText(), u"old"_s);
    switch (way) {
    case 0:
        m_session->prepareManualInput(false, std::nullopt);
        break;
    case 1:
        m_session->prepareReply(u"x"_s, Language::English);
        break;
    case 2:
        m_session->editSource(u"乙"_s);
        break;
    default:
        m_session->setSource(u" "_s, true, std::nullopt);
    }
    QCOMPARE(phase(), Phase::Kind::Idle);
    QCOMPARE(m_session->translatedText(), QString());
    QTRY_COMPARE(m_server->openConnections(), 0);
    QCOMPARE(phase(), Phase::Kind::Idle);
    QVERIFY(m_recorded.isEmpty());
}

void TestTranslationViewModel::theDirectionFollowsTheRule()
{
    m_session->prepareManualInput(true, std::nullopt);
    QCOMPARE(m_session->detectedSource(), Language::Auto);
    QCOMPARE(m_session->effectiveTarget(), Language::Japanese);
    m_settings->secondaryLanguageRaw.set(u"english"_s);
    m_session->editSource(u"报价"_s);
    QCOMPARE(m_session->effectiveTarget(), Language::English);
    m_settings->defaultTargetLanguageRaw.set(u"nonsense"_s); // counts as Chinese
    m_settings->secondaryLanguageRaw.set(u"nonsense"_s);     // counts as Japanese
    m_session->editSource(u"报价单"_s);
    QCOMPARE(m_session->effectiveTarget(), Language::Japanese);
    m_session->editSource(u"hello"_s);
    QCOMPARE(m_session->effectiveTarget(), Language::Chinese);
    m_session->editSource(u"  "_s); // keeps the direction
    QCOMPARE(m_session->effectiveTarget(), Language::Chinese);
}

void TestTranslationViewModel::aChosenTargetStandsUntilTheNextTrigger()
{
    m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
    m_session->setSource(u"hello"_s, true, std::nullopt);
    m_session->selectTarget(Language::Korean);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    m_session->editSource(u"hello there"_s);
    m_session->translateNow();
    QCOMPARE(m_session->effectiveTarget(), Language::Korean);
    m_session->setSource(u"hello"_s, true, std::nullopt);
    QCOMPARE(m_session->effectiveTarget(), Language::Chinese);
    m_session->selectTarget(Language::Korean);
    m_session->prepareManualInput(false, std::nullopt);
    m_session->editSource(u"hello"_s);
    QCOMPARE(m_session->effectiveTarget(), Language::Chinese);
}

void TestTranslationViewModel::aChosenTargetRunsOnlyWhereThereIsSomethingToReplace()
{
    m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
    m_session->prepareManualInput(false, std::nullopt);
    m_session->selectTarget(Language::Korean);
    m_session->editSource(u"hello"_s);
    m_session->selectTarget(Language::English);
    QCOMPARE(m_session->detectedSource(), Language::English);
    QCOMPARE(phase(), Phase::Kind::Idle); // waits for the button
    m_settings->liveTranslate.set(true);
    m_session->selectTarget(Language::Korean);
    QCOMPARE(phase(), Phase::Kind::Loading);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(bodyOf(m_server->requests().last())[u"target"].toString(), u"korean"_s);
}

void TestTranslationViewModel::typingClearsTheResultWhileLiveTranslationIsOff()
{
    m_server->enqueue(eventStream({u"x"_s}, {.usage = localcloud::TokenCounts{1, 1}}));
    m_session->prepareManualInput(true, std::nullopt);
    m_session->editSource(u"甲"_s);
    m_session->translateNow();
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    m_session->editSource(u"甲乙"_s);
    QCOMPARE(phase(), Phase::Kind::Idle);
    QCOMPARE(m_session->translatedText(), QString());
    QCOMPARE(m_session->lastTokens(), std::nullopt);
}

void TestTranslationViewModel::liveTranslationWaitsForTheTextToRest()
{
    m_settings->liveTranslate.set(true);
    m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
    m_session->prepareManualInput(true, std::nullopt);
    QElapsedTimer sinceLastEdit;
    for (const QString &text : {u"甲"_s, u"甲乙"_s, u"甲乙丙"_s}) {
        m_session->editSource(text);
        sinceLastEdit.start();
    }
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QVERIFY(sinceLastEdit.elapsed() >= 1000);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(bodyOf(m_server->requests().first())[u"text"].toString(), u"甲乙丙"_s);
}

void TestTranslationViewModel::theProgramsOwnTextIsNoEdit()
{
    m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
    m_session->setSource(u"甲"_s, true, std::nullopt);
    m_session->sourceEdited(); // an editor that reports the text back
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    m_session->sourceEdited(); // the second time it is the user
    QCOMPARE(phase(), Phase::Kind::Idle);
}

void TestTranslationViewModel::aReplyCarriesTheOthersWordsAsBackground()
{
    m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
    m_session->setSource(u" Could you send the quotation? "_s, false, std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QVERIFY(m_session->showReply());

    m_session->prepareReply(m_session->sourceText(), m_session->detectedSource());
    QCOMPARE(m_session->mode(), PanelMode::Reply);
    QCOMPARE(m_session->contextText(), u"Could you send the quotation?"_s);
    QCOMPARE(m_session->sourceText(), QString());
    QCOMPARE(m_session->effectiveTarget(), Language::English);
    m_session->editSource(u"马上发"_s);
    m_session->translateNow();
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    const QJsonObject body = bodyOf(m_server->requests().last());
    QCOMPARE(body[u"target"].toString(), u"english"_s);
    QCOMPARE(body[u"background"].toString(), u"Could you send the quotation?"_s);
    QCOMPARE(m_session->primaryAction(), PrimaryAction::Copy);
}

void TestTranslationViewModel::stylesReachJapaneseRequestsOnly_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QJsonValue>("style");
    QTest::newRow("polite") << u"polite"_s << u"报价"_s << QJsonValue(u"礼貌、丁寧語"_s);
    QTest::newRow("business") << u"business"_s << u"报价"_s
                              << QJsonValue(u"商务敬语、ビジネス文体"_s);
    QTest::newRow("normal") << u"normal"_s << u"报价"_s << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("unknown") << u"x"_s << u"报价"_s << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("into Chinese") << u"polite"_s << u"hello"_s << QJsonValue(QJsonValue::Undefined);
}

void TestTranslationViewModel::stylesReachJapaneseRequestsOnly()
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

void TestTranslationViewModel::historyIsReusedWithoutARequest()
{
    m_settings->autoCopyOnFinish.set(true);
    m_session->historyLookup = [](const QString &source, Language target) {
        return source == u"报价" && target == Language::Japanese ? std::optional(u"見積もり"_s)
                                                                 : std::nullopt;
    };
    m_session->setSource(u" 报价 "_s, true, std::nullopt);
    QCOMPARE(phase(), Phase::Kind::Done);
    QVERIFY(m_session->fromHistory());
    QCOMPARE(m_session->translatedText(), u"見積もり"_s);
    QCOMPARE(m_session->lastTokens(), std::nullopt);
    QCOMPARE(m_clipboard->text(), u"見積もり"_s); // auto copy holds for a reuse too
    QVERIFY(m_recorded.isEmpty());
    QVERIFY(m_server->requests().isEmpty());
}

void TestTranslationViewModel::historyIsNotAskedWhereTheResultMayDiffer_data()
{
    QTest::addColumn<bool>("background");
    QTest::addColumn<bool>("term");
    QTest::addColumn<QString>("cached");
    QTest::newRow("background") << true << false << u"旧"_s;
    QTest::newRow("matching term") << false << true << u"旧"_s;
    QTest::newRow("empty entry") << false << false << u""_s;
}

void TestTranslationViewModel::historyIsNotAskedWhereTheResultMayDiffer()
{
    QFETCH(bool, background);
    QFETCH(bool, term);
    QFETCH(QString, cached);
    m_session->historyLookup = [cached](const QString &, Language) {
        return std::optional(cached);
    };
    m_session->glossaryProvider = [term] {
        const QString zh = term ? u"报价"_s : u"合同"_s;
        return std::vector<GlossaryTerm>{{QUuid::createUuid(), zh, u"見積もり"_s}};
    };
    m_server->enqueue(eventStream({u"新"_s}));
    m_session->prepareManualInput(true, std::nullopt);
    if (background)
        m_session->editContext(u"前文"_s);
    m_session->editSource(u"报价"_s);
    m_session->translateNow();
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(m_session->translatedText(), u"新"_s);
    QVERIFY(!m_session->fromHistory());
    QCOMPARE(bodyOf(m_server->requests().first()).contains(u"glossary"), term);
}

void TestTranslationViewModel::usageAddsUpForOneResult()
{
    std::vector<TokenUsage> recorded;
    m_session->usageRecorder = [&](const TokenUsage &usage) { recorded.push_back(usage); };
    QByteArrayList lines{"data: " + localcloud::usageEvent({1, 2}),
                         "data: " + localcloud::pieceEvent(u"x"_s),
                         "data: " + localcloud::usageEvent({3, 4}), "data: [DONE]"};
    m_server->enqueue(localcloud::lineStream(lines));
    m_session->setSource(u"甲"_s, true, std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(recorded, (std::vector<TokenUsage>{{1, 2}, {3, 4}}));
    QCOMPARE(m_session->lastTokens(), 10);
}

void TestTranslationViewModel::copyingShowsForAMoment()
{
    m_session->copyResult(); // nothing to copy
    QVERIFY(!m_session->justCopied());
    QCOMPARE(m_clipboard->changeCount(), 0);

    m_server->enqueue(eventStream({u"x"_s}));
    m_session->setSource(u"甲"_s, true, std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    m_session->copyResult();
    QVERIFY(m_session->justCopied());
    QCOMPARE(m_clipboard->text(), u"x"_s);
    QTRY_VERIFY(!m_session->justCopied());
}

void TestTranslationViewModel::theMainButtonFollowsTheSituation_data()
{
    QTest::addColumn<PanelMode>("mode");
    QTest::addColumn<bool>("target");
    QTest::addColumn<PrimaryAction>("action");
    QTest::newRow("selection in a field") << PanelMode::Selection << true << PrimaryAction::Replace;
    QTest::newRow("selection elsewhere") << PanelMode::Selection << false << PrimaryAction::None;
    QTest::newRow("compose for a field") << PanelMode::Compose << true << PrimaryAction::Insert;
    QTest::newRow("compose for nobody") << PanelMode::Compose << false << PrimaryAction::Copy;
}

void TestTranslationViewModel::theMainButtonFollowsTheSituation()
{
    QFETCH(PanelMode, mode);
    QFETCH(bool, target);
    m_server->enqueue(eventStream({u"x"_s}));
    if (mode == PanelMode::Selection) {
        m_session->setSource(u"甲"_s, target, std::nullopt);
    } else {
        m_session->prepareManualInput(target, std::nullopt);
        m_session->editSource(u"甲"_s);
        m_session->translateNow();
    }
    QCOMPARE(m_session->primaryAction(), PrimaryAction::None);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QTEST(m_session->primaryAction(), "action");

    QString inserted;
    m_session->insertHandler = [&](const QString &text) { inserted = text; };
    m_session->insert();
    QCOMPARE(inserted, u"x"_s);
}

void TestTranslationViewModel::aChangeOfSettingsCountsFromTheNextRun()
{
    m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
    m_session->setSource(u"甲"_s, true, std::nullopt);
    m_settings->useCustomBackend.set(true);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(m_server->requests().last().path, "/v1/translate"_ba);
    m_session->translateNow();
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(m_server->requests().last().path, "/v1/chat/completions"_ba);
}

QTEST_GUILESS_MAIN(TestTranslationViewModel)
#include "tst_translation_view_model.moc"
