#include "desktop/speech_service.h"

#include "platform_memory/memory_speech_synthesizer.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using platform::SpeechVoice;
using Quality = SpeechVoice::Quality;
using End = platform::SpeechSynthesizer::End;

class TestSpeechService : public QObject
{
    Q_OBJECT

    memory::MemorySpeechSynthesizer m_synth;
    std::unique_ptr<SpeechService> m_service;

    QString lastVoice() const { return m_synth.utterances().constLast().voice; }

private Q_SLOTS:
    void init()
    {
        m_synth = {};
        m_synth.setVoices({{u"1"_s, u"Berta"_s, u"en-US"_s, Quality::Default},
                           {u"2"_s, u"Anna"_s, u"en-US"_s, Quality::Default},
                           {u"3"_s, u"Zoe"_s, u"en-US"_s, Quality::Enhanced},
                           {u"4"_s, u"Yuri"_s, u"en-GB"_s, Quality::Premium},
                           {u"5"_s, u"Kyoko"_s, u"ja-JP"_s, Quality::Default},
                           {u"6"_s, u"Zita"_s, u"en-US"_s, Quality::Premium}});
        m_service = std::make_unique<SpeechService>(m_synth);
    }

    void voicesComeBestFirstThenByName()
    {
        QVERIFY(m_service->voices(u"en-US"_s).empty());
        QSignalSpy changed(m_service.get(), &SpeechService::voicesChanged);
        m_service->loadVoices();
        m_service->loadVoices();
        QVERIFY(changed.wait());
        QString order;
        for (const SpeechVoice &voice : m_service->voices(u"en-US"_s))
            order += voice.identifier;
        QCOMPARE(order, u"6321"_s);
        QCOMPARE(m_synth.voiceReads(), 1);
    }

    void choosesTheVoice_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("preferred");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("the preferred one of any language") << u"ja-JP"_s << u"4"_s << u"4"_s;
        QTest::newRow("the best where the preferred is gone") << u"ja-JP"_s << u"9"_s << u"5"_s;
        QTest::newRow("the best") << u"en-US"_s << QString() << u"6"_s;
        QTest::newRow("one of a related language") << u"ja"_s << QString() << u"5"_s;
        QTest::newRow("none") << u"zh-CN"_s << QString() << QString();
    }

    void choosesTheVoice()
    {
        QFETCH(const QString, language);
        QFETCH(const QString, preferred);
        m_service->speak(u"text"_s, language, preferred, 0.4);
        QTRY_COMPARE(m_synth.utterances().size(), 1);
        QTEST(lastVoice(), "chosen");
        QCOMPARE(m_synth.utterances()[0].text, u"text"_s);
        QCOMPARE(m_synth.utterances()[0].rate, 0.4);
    }

    void stopsBeforeTheVoicesAreKnown()
    {
        QSignalSpy voices(m_service.get(), &SpeechService::voicesChanged);
        m_service->speak(u"text"_s, u"en-US"_s, {}, 0.5);
        m_service->stop();
        QVERIFY(voices.wait());
        QVERIFY(m_synth.utterances().isEmpty());
    }

    void aMissingServiceIsToldAndTriedAnew()
    {
        m_synth.setInstalled(false);
        QSignalSpy availability(m_service.get(), &SpeechService::availabilityChanged);
        m_service->speak(u"text"_s, u"en-US"_s, {}, 0.5);
        QVERIFY(availability.wait());
        QVERIFY(!m_service->isAvailable());
        m_synth.setInstalled(true);
        m_synth.setSpeaksAtOnce(true);
        m_service->speak(u"text"_s, u"en-US"_s, {}, 0.5);
        QVERIFY(availability.wait());
        QVERIFY(m_service->isAvailable());
        QTRY_COMPARE(m_synth.utterances().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestSpeechService)
#include "tst_speech_service.moc"
