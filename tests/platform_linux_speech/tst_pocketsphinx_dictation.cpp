// Qt Multimedia's microphones of a real sound server, and what PocketSphinx makes of sound.

#include "platform_linux_speech/audio_qt_input.h"
#include "platform_linux_speech/speech_offline_recognizer.h"

#include "support/sound_server.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using Failure = platform::AudioInput::Failure;
using Result = platform::RecognitionResult;

class TestPocketsphinxDictation : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    test::SoundServer m_sound{m_folder.path()};
    linuxdesktop::QtAudioInput m_microphone;

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("HOME", m_folder.path().toUtf8());
        qputenv("PULSE_SERVER", m_sound.address().toUtf8());
        QVERIFY2(m_sound.start(), "PulseAudio cannot be run");
    }

    void aMissingMicrophoneIsTold()
    {
        std::optional<Failure> failure;
        const auto recording =
            m_microphone.record([](const QByteArray &) {}, [&](Failure what) { failure = what; });
        QTRY_VERIFY_WITH_TIMEOUT(failure, 10000);
        QCOMPARE(*failure, Failure::NoDevice);
    }

    void aSentenceIsUnderstoodWheneverItBegins_data()
    {
        QTest::addColumn<double>("pause");

        QTest::newRow("at once") << 0.0;
        QTest::newRow("after a moment") << 0.5;
        QTest::newRow("after hesitation") << 3.0;
        QTest::newRow("late") << 20.0;
    }
    void aSentenceIsUnderstoodWheneverItBegins()
    {
        QFETCH(const double, pause);
        const QString recording = m_folder.filePath(u"sentence-alone.wav"_s);
        QCOMPARE(QProcess::execute(u"flite"_s,
                                   {u"-voice"_s, u"slt"_s, u"-t"_s,
                                    u"please send me the report tomorrow"_s, u"-o"_s, recording}),
                 0);
        QFile file(recording);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray sound = file.readAll().sliced(44); // behind the header
        const auto *samples = reinterpret_cast<const qint16 *>(sound.constData());
        qsizetype silence = 0;
        while (std::abs(samples[silence]) < 1000)
            ++silence;
        linuxdesktop::OfflineSpeechRecognizer recognizer;
        std::optional<QString> text;
        const auto recognition = recognizer.recognize(u"en-US"_s, [&](const Result &result) {
            if (result.isFinal)
                text = result.text;
        });
        QVERIFY(recognition);
        recognition->append(QByteArray(2 * qsizetype(16000 * pause), '\0') +
                            sound.sliced(2 * silence));
        recognition->endAudio();
        QTRY_VERIFY_WITH_TIMEOUT(text, 20000);
        QCOMPARE(*text, u"please send me the report tomorrow"_s);
    }
};

QTEST_GUILESS_MAIN(TestPocketsphinxDictation)
#include "tst_pocketsphinx_dictation.moc"
