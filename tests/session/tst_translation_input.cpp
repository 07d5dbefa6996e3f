#include "session_test.h"

#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using localcloud::eventStream;

// What the user does in the panel, and the direction that follows from it.
class TestTranslationInput : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void theDirectionFollowsTheRule()
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

    void aChosenTargetStandsUntilTheNextTrigger()
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

    void aChosenTargetRunsOnlyWhereThereIsSomethingToReplace()
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

    void liveTranslationWaitsForTheTextToRest()
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

    void aPendingRunOutlivesATrigger()
    {
        m_settings->liveTranslate.set(true);
        m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
        m_session->prepareManualInput(true, std::nullopt);
        m_session->editSource(u"甲"_s);
        m_session->setSource(u"乙"_s, true, std::nullopt);
        QTRY_COMPARE(m_server->requests().size(), 2);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(bodyOf(m_server->requests().last())[u"text"].toString(), u"乙"_s);
    }

    void theProgramsOwnTextIsNoEdit()
    {
        m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
        m_session->setSource(u"甲"_s, true, std::nullopt);
        m_session->sourceEdited(); // an editor that reports the text back
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        m_session->sourceEdited(); // the second time it is the user
        QCOMPARE(phase(), Phase::Kind::Idle);
    }
};

QTEST_GUILESS_MAIN(TestTranslationInput)
#include "tst_translation_input.moc"
