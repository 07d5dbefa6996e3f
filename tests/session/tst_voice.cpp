#include "session_test.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using localcloud::eventStream;
using End = platform::SpeechSynthesizer::End;

// Reading aloud and dictation, as the panel asks for them.
class TestVoice : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void theJapaneseSideIsReadAloud_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<Language>("target");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("spoken");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("voice");
        QTest::newRow("Japanese result") << u"报价"_s << Language::Japanese << u" 答え\n"_s
                                         << u"答え"_s << u"ja-JP"_s << u"chosen"_s;
        QTest::newRow("Japanese source")
            << u" これはいくらですか\n"_s << Language::Chinese << u"多少钱"_s
            << u"これはいくらですか"_s << u"ja-JP"_s << u"chosen"_s;
        QTest::newRow("English") << u"报价"_s << Language::English << u"offer"_s << u"offer"_s
                                 << u"en-US"_s << u"english"_s;
        QTest::newRow("Korean") << u"报价"_s << Language::Korean << u"견적"_s << u"견적"_s
                                << u"zh-CN"_s << u""_s;
        QTest::newRow("blank result")
            << u"报价"_s << Language::English << u" "_s << u""_s << u""_s << u""_s;
    }

    void theJapaneseSideIsReadAloud()
    {
        QFETCH(QString, source);
        QFETCH(Language, target);
        QFETCH(QString, result);
        QFETCH(QString, spoken);
        using Quality = platform::SpeechVoice::Quality;
        m_desktop->speechSynthesizer.setVoices(
            {{u"best"_s, u"A"_s, u"ja-JP"_s, Quality::Premium},
             {u"chosen"_s, u"B"_s, u"ja-JP"_s, Quality::Default},
             {u"english"_s, u"C"_s, u"en-US"_s, Quality::Default}});
        m_settings->speechVoiceID.set(u"chosen"_s);
        m_settings->speechRate.set(0.625);
        m_session->speakCurrent(); // nothing to say yet
        QVERIFY(!m_session->speechTarget());
        m_session->historyLookup = [&](const QString &, Language) { return std::optional(result); };
        m_session->prepareManualInput(true, std::nullopt);
        m_session->editSource(source);
        m_session->selectTarget(target);
        m_session->translateNow();
        QVERIFY(m_session->speechTarget().has_value());
        m_session->speakCurrent();
        if (spoken.isEmpty()) {
            QCOMPARE(m_desktop->speechSynthesizer.voiceReads(), 0);
            return;
        }
        QTRY_COMPARE(m_desktop->speechSynthesizer.utterances().size(), 1);
        const platform::Utterance said = m_desktop->speechSynthesizer.utterances().first();
        QCOMPARE(said.text, spoken);
        QTEST(said.language, "language");
        QTEST(said.voice, "voice");
        QCOMPARE(said.rate, 0.625);
    }

    void aResultIsReadByItselfWhereWanted()
    {
        translate(u"报价"_s, u"x"_s);
        m_settings->autoSpeak.set(true);
        translate(u"报价"_s, u"x"_s);
        QTRY_COMPARE(m_desktop->speechSynthesizer.utterances().size(), 1);
        m_session->historyLookup = [](const QString &, Language) { return std::optional(u"y"_s); };
        m_session->translateNow();
        QTRY_COMPARE(m_desktop->speechSynthesizer.utterances().size(), 2);
        QCOMPARE(m_desktop->speechSynthesizer.utterances().last().text, u"y"_s);
    }

    void speechEndsWithItsText()
    {
        const std::function<void()> ways[] = {
            [&] { m_session->setSource(u" "_s, true, std::nullopt); },
            [&] { m_session->prepareManualInput(true, std::nullopt); },
            [&] { m_session->stopSpeaking(); },
            [&] { m_desktop->speechSynthesizer.endSpeaking(End::Finished); },
        };
        for (const auto &end : ways) {
            translate(u"报价"_s, u"x"_s);
            m_session->speakCurrent();
            QTRY_VERIFY(m_desktop->speechSynthesizer.isBusy());
            QVERIFY(!m_session->isSpeaking()); // not before the first sound
            QSignalSpy changed(m_session.get(), &TranslationViewModel::isSpeakingChanged);
            m_desktop->speechSynthesizer.startSpeaking();
            QTRY_VERIFY(m_session->isSpeaking());
            end();
            QTRY_VERIFY(!m_session->isSpeaking());
            QVERIFY(!m_desktop->speechSynthesizer.isBusy());
            QCOMPARE(changed.count(), 2);
        }
        m_desktop->speechSynthesizer.setInstalled(false);
        translate(u"报价"_s, u"x"_s);
        m_session->speakCurrent();
        QTRY_VERIFY(!m_session->isSpeechAvailable());
        QVERIFY(m_session->speechTarget()); // the next attempt may find a service
    }

    void dictationGoesBehindTheText()
    {
        m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
        m_session->prepareManualInput(true, std::nullopt);
        m_session->editSource(u"请"_s);
        m_session->translateNow();
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        // A view reports what it is told to show.
        connect(m_session.get(), &TranslationViewModel::sourceTextChanged, m_session.get(),
                [this] { m_session->editSource(m_session->sourceText()); });

        dictate();
        m_desktop->speechRecognizer.deliver({u"发"_s, false});
        QTRY_COMPARE(m_session->sourceText(), u"请发"_s);
        m_desktop->speechRecognizer.deliver({u"发报"_s, false});
        QTRY_COMPARE(m_session->sourceText(), u"请发报"_s); // not "请发发报"
        QCOMPARE(m_session->translatedText(), u"x"_s);
        QCOMPARE(phase(), Phase::Kind::Done);

        m_session->toggleVoice();
        QVERIFY(!m_session->isListening());
        QVERIFY(m_desktop->speechRecognizer.audioEnded());
        m_desktop->speechRecognizer.deliver({u"发报价"_s, true});
        QTRY_COMPARE(m_session->sourceText(), u"请发报价"_s);
        QVERIFY(m_session->isTranslating()); // at once
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(bodyOf(m_server->requests().last())[u"text"].toString(), u"请发报价"_s);
    }

    void dictationListensInTheUsersLanguage()
    {
        const QStringList languages{
            u"chinese"_s,   u"japanese"_s, u"english"_s, u"korean"_s, u"traditionalChinese"_s,
            u"cantonese"_s, u"nonsense"_s, u"romaji"_s};
        for (const QString &raw : languages) {
            m_settings->defaultTargetLanguageRaw.set(raw);
            dictate();
            m_desktop->speechRecognizer.deliver({{}, true});
            QTRY_VERIFY(!m_session->isListening());
        }
        QCOMPARE(m_desktop->speechRecognizer.locales().join(u' '),
                 u"zh-CN ja-JP en-US ko-KR zh-TW zh-HK zh-CN zh-CN"_s);
    }

    void aFailedDictationSaysWhy_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("opens");
        QTest::newRow("the desktop keeps the microphone") << u"无法打开麦克风"_s << true;
        QTest::newRow("anything else") << u"麦克风已断开"_s << false;
    }

    void aFailedDictationSaysWhy()
    {
        QFETCH(QString, message);
        QFETCH(bool, opens);
        dictate();
        (opens ? m_speechInput->onRefused : m_speechInput->onError)(message);
        QVERIFY(!m_session->isListening());
        QCOMPARE(m_session->voiceError(), message);
        QCOMPARE(m_session->voiceErrorOpensSettings(), opens);
        m_session->openVoiceSettings();
        QCOMPARE(m_desktop->settingsPanes.opened(),
                 std::vector{platform::SettingsPane::Microphone});
        m_desktop->settingsPanes.setInstalled(false);
        m_session->openVoiceSettings();
        QCOMPARE(m_session->voiceError(), u"没有找到系统设置程序"_s);

        m_session->toggleVoice();
        QCOMPARE(m_session->voiceError(), QString());
        (opens ? m_speechInput->onRefused : m_speechInput->onError)(message);
        m_session->setSource(u"甲"_s, true, std::nullopt);
        QCOMPARE(m_session->voiceError(), QString());
        QVERIFY(!m_session->voiceErrorOpensSettings());
    }

    void aTriggerEndsADictation_data()
    {
        QTest::addColumn<bool>("granted");
        QTest::newRow("under way") << true;
        QTest::newRow("before the microphone is granted") << false;
    }

    void aTriggerEndsADictation()
    {
        QFETCH(bool, granted);
        m_session->prepareManualInput(true, std::nullopt);
        if (granted)
            dictate();
        else
            m_session->toggleVoice();
        translate(u"报价"_s, u"x"_s);
        QTRY_VERIFY(m_desktop->speechRecognizer.audioEnded());
        QVERIFY(!m_session->isListening());
        QVERIFY(!m_desktop->audioInput.isRecording());
        m_desktop->speechRecognizer.deliver({u"旧"_s, true});
        QTRY_VERIFY(!m_desktop->speechRecognizer.isRecognizing());
        QCOMPARE(m_session->sourceText(), u"报价"_s);

        dictate(); // and the next one is heard
        m_desktop->speechRecognizer.deliver({u"单"_s, false});
        QTRY_COMPARE(m_session->sourceText(), u"报价单"_s);
    }

private:
    void dictate()
    {
        m_session->toggleVoice();
        QVERIFY(m_session->isListening()); // at once
        QTRY_VERIFY(m_desktop->speechRecognizer.isRecognizing());
    }
};

QTEST_GUILESS_MAIN(TestVoice)
#include "tst_voice.moc"
