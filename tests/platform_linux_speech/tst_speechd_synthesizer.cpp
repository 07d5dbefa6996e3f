// Against the real speech service with eSpeak, on a loudspeaker that nobody hears;
// and against one of the test's own, which shows what it is told.

#include "platform_linux/mecab_tokenizer.h"
#include "platform_linux_speech/speechd_synthesizer.h"

#include "support/sound_server.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using linuxdesktop::SpeechdSynthesizer;
using platform::SpeechVoice;
using platform::Utterance;
using End = platform::SpeechSynthesizer::End;

namespace {
// A speech service that keeps what it is told and says nothing.
class ListeningService
{
public:
    explicit ListeningService(const QString &socket)
    {
        QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
            QLocalSocket *const client = m_server.nextPendingConnection();
            QObject::connect(client, &QLocalSocket::readyRead, client, [this, client] {
                while (m_answers && client->canReadLine())
                    answer(client, client->readLine());
            });
        });
        m_server.listen(socket);
    }

    void setAnswers(bool answers) { m_answers = answers; }
    QByteArrayList lines() const { return m_lines; }

private:
    void answer(QLocalSocket *client, QByteArray line)
    {
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        m_lines.append(line);
        if (line == "speak")
            client->write("230 OK RECEIVING DATA\r\n");
        else if (line == "HISTORY GET CLIENT_ID")
            client->write("245-7\r\n245 OK CLIENT ID SENT\r\n");
        else if (line == ".")
            client->write("225-1\r\n225 OK MESSAGE QUEUED\r\n");
        else if (!m_isText)
            client->write("200 OK\r\n");
        m_isText = line == "speak" || (m_isText && line != ".");
    }

    QLocalServer m_server;
    QByteArrayList m_lines;
    bool m_answers = true;
    bool m_isText = false;
};

// What became of an utterance.
struct Course
{
    platform::Task task;
    int starts = 0;
    std::optional<End> end;
};

void speak(SpeechdSynthesizer &synthesizer, Course &course, const Utterance &utterance)
{
    course.task = synthesizer.speak(
        utterance, [&course] { ++course.starts; }, [&course](End end) { course.end = end; });
}

const QString sentence = u"It is a fine day, so let us go for a walk in the park together."_s;
const QString american = u"espeak-ng/English (America)"_s;

} // namespace

class TestSpeechdSynthesizer : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    test::SoundServer m_sound{m_folder.path()};
    linuxdesktop::MecabTokenizer m_tokenizer;
    std::unique_ptr<SpeechdSynthesizer> m_synthesizer;

    qint64 servicePid() const
    {
        QFile file(m_folder.filePath(u"speech-dispatcher/pid/speech-dispatcher.pid"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *folder : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            qputenv(folder, m_folder.path().toUtf8());
        QVERIFY2(m_sound.start(), "PulseAudio cannot be run");
        qputenv("PULSE_SERVER", m_sound.address().toUtf8());
    }
    void init() { m_synthesizer = std::make_unique<SpeechdSynthesizer>(m_tokenizer); }
    void cleanup()
    {
        m_synthesizer.reset();
        qunsetenv("SPEECHD_ADDRESS");
    }
    void cleanupTestCase()
    {
        if (const qint64 pid = servicePid(); pid > 0)
            kill(pid_t(pid), SIGTERM);
    }

    void offersOneGoodVoiceForEachLanguage()
    {
        std::optional<std::vector<SpeechVoice>> voices;
        const auto task = m_synthesizer->readVoices([&](auto found) { voices = std::move(found); });
        QTRY_VERIFY_WITH_TIMEOUT(!task.isRunning(), 20000);
        QVERIFY(voices);
        const auto names = [&](const QString &language) {
            QStringList found;
            for (const SpeechVoice &voice : *voices) {
                if (voice.language == language)
                    found.append(voice.identifier);
            }
            return found;
        };
        QCOMPARE(names(u"en-US"_s), QStringList{american});
        QCOMPARE(names(u"ja-JP"_s), QStringList{u"espeak-ng/Japanese"_s});
        QCOMPARE(names(u"zh-CN"_s),
                 QStringList{u"espeak-ng/Chinese (Mandarin, latin as Pinyin)"_s});
        QVERIFY(std::ranges::none_of(
            *voices, [](const SpeechVoice &voice) { return voice.name.contains(u'+'); }));
    }

    void aDroppedTaskIsSilentAndANewTextReplacesTheOld()
    {
        Course dropped, replaced, last;
        speak(*m_synthesizer, dropped, {sentence.repeated(20), u"en-US"_s, american});
        QTRY_VERIFY_WITH_TIMEOUT(dropped.starts && m_sound.isSounding(), 20000);
        dropped.task.cancel();
        QTRY_VERIFY_WITH_TIMEOUT(!m_sound.isSounding(), 10000);
        QVERIFY(!dropped.end);

        speak(*m_synthesizer, replaced, {sentence.repeated(20), u"en-US"_s, american});
        QTRY_VERIFY_WITH_TIMEOUT(replaced.starts, 20000);
        speak(*m_synthesizer, last, {u"Yes."_s, u"en-US"_s, american});
        QTRY_VERIFY_WITH_TIMEOUT(last.end && replaced.end, 20000);
        QCOMPARE(*replaced.end, End::Cancelled);
        QCOMPARE(*last.end, End::Finished);
    }

    void tellsTheServiceVoiceRateAndText_data()
    {
        QTest::addColumn<Utterance>("utterance");
        QTest::addColumn<QByteArrayList>("told");
        QTest::newRow("a voice, and a text that would end itself")
            << Utterance{u".Hello.\n.\nSTOP all"_s, u"en-US"_s, american, 0.5}
            << QByteArrayList{"SET SELF OUTPUT_MODULE espeak-ng",
                              "SET SELF SYNTHESIS_VOICE English (America)",
                              "SET SELF RATE 0",
                              " .Hello.",
                              " .",
                              "STOP all"};
        QTest::newRow("no voice") << Utterance{u"Bonjour"_s, u"fr-FR"_s, {}, 0.3}
                                  << QByteArrayList{"SET SELF LANGUAGE fr", "SET SELF RATE -100",
                                                    "Bonjour"};
        QTest::newRow("kanji for eSpeak, beyond the fastest rate")
            << Utterance{u"東京へ行きます。"_s, u"ja-JP"_s, u"espeak-ng/Japanese"_s, 0.9}
            << QByteArrayList{"SET SELF RATE 100", "トーキョー エ イキマス 。 "};
        QTest::newRow("kanji for a voice that reads them")
            << Utterance{u"東京"_s, u"ja-JP"_s, u"open_jtalk/Mei"_s, 0.6}
            << QByteArrayList{"SET SELF RATE 50", "東京"};
        QTest::newRow("a null character")
            << Utterance{u"a\0b"_s, u"en-US"_s, american, 0.5} << QByteArrayList{"a b"};
    }

    void tellsTheServiceVoiceRateAndText()
    {
        QFETCH(const Utterance, utterance);
        QFETCH(const QByteArrayList, told);
        const ListeningService service(m_folder.filePath(u"listening"_s));
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + m_folder.filePath(u"listening"_s).toUtf8());
        Course course;
        speak(*m_synthesizer, course, utterance);
        QTRY_VERIFY_WITH_TIMEOUT(service.lines().contains("."), 20000);
        for (const QByteArray &line : told)
            QVERIFY2(service.lines().contains(line),
                     line + " is not in " + service.lines().join('|'));
    }

    void aMissingOrStuckServiceFails_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<QByteArray>("warning");
        QTest::newRow("missing") << false << "No speech service: nothing is read aloud"_ba;
        QTest::newRow("stuck") << true << "The speech service does not answer"_ba;
    }

    void aMissingOrStuckServiceFails()
    {
        QFETCH(const bool, isThere);
        QFETCH(const QByteArray, warning);
        ListeningService service(isThere ? m_folder.filePath(u"stuck"_s) : QString());
        service.setAnswers(false);
        // Not one that is started where it does not run.
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + m_folder.filePath(u"stuck"_s).toUtf8());
        Course course;
        QTest::ignoreMessage(QtWarningMsg, warning.constData());
        if (isThere)
            QTest::ignoreMessage(QtWarningMsg, "The speech service's thread does not end");
        QElapsedTimer sinceCall;
        sinceCall.start();
        speak(*m_synthesizer, course, {sentence, u"en-US"_s, american});
        QVERIFY(sinceCall.elapsed() < 500);
        QTRY_VERIFY_WITH_TIMEOUT(course.end, 20000);
        QCOMPARE(*course.end, End::Failed);
        sinceCall.start();
        m_synthesizer.reset();
        QVERIFY(sinceCall.elapsed() < 4000);
    }
};

QTEST_GUILESS_MAIN(TestSpeechdSynthesizer)
#include "tst_speechd_synthesizer.moc"
