#include "desktop/speech_input_service.h"

#include "platform_memory/memory_audio_input.h"
#include "platform_memory/memory_speech_recognizer.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using AudioFailure = platform::AudioInput::Failure;
using Result = platform::RecognitionResult;

class TestSpeechInputService : public QObject
{
    Q_OBJECT

    struct World
    {
        memory::MemoryAudioInput audio;
        memory::MemorySpeechRecognizer recognizer;
        SpeechInputService service{audio, recognizer};
        QStringList told; // by the callbacks, in order

        World()
        {
            service.onPartial = [this](const QString &text) { told << u"partial "_s + text; };
            service.onFinal = [this](const QString &text) { told << u"final "_s + text; };
            service.onError = [this](const QString &text) { told << u"error "_s + text; };
            service.onRefused = [this](const QString &text) { told << u"refused "_s + text; };
            service.onStateChange = [this](bool on) { told << (on ? u"on"_s : u"off"_s); };
        }
    };
    std::unique_ptr<World> m_world;

    void listen()
    {
        m_world->service.start();
        QTRY_VERIFY(m_world->audio.isRecording());
    }

private Q_SLOTS:
    void init() { m_world = std::make_unique<World>(); }

    void aDictationGoesFromSoundToText()
    {
        m_world->service.localeProvider = [] { return u"en-US"_s; };
        m_world->service.start();
        QCOMPARE(m_world->told, QStringList{u"on"_s}); // before any permission
        m_world->service.start();
        QTRY_VERIFY(m_world->audio.isRecording());
        QCOMPARE(m_world->audio.accessRequests(), 1);
        QCOMPARE(m_world->recognizer.locales(), QStringList{u"en-US"_s});
        m_world->audio.hear("1234"_ba);
        QCOMPARE(m_world->recognizer.heard(), "1234"_ba);
        m_world->recognizer.deliver({{}});
        m_world->recognizer.deliver({u"good"_s});
        m_world->service.stop();
        m_world->service.stop();
        QVERIFY(!m_world->audio.isRecording() && m_world->recognizer.audioEnded());
        m_world->recognizer.deliver({u"good day"_s, true});
        QCOMPARE(m_world->told,
                 (QStringList{u"on"_s, u"partial good"_s, u"off"_s, u"final good day"_s}));
        QVERIFY(!m_world->recognizer.isRecognizing());
    }

    void whatGoesWrongIsTold_data()
    {
        QTest::addColumn<std::function<void(World &)>>("before");
        QTest::addColumn<std::function<void(World &)>>("after"); // once it listens
        QTest::addColumn<QStringList>("told");
        using Step = std::function<void(World &)>;
        const Step nothing;
        const auto fails = [](AudioFailure failure) {
            return Step([failure](World &world) { world.audio.fail(failure); });
        };
        QTest::newRow("permission refused")
            << Step([](World &world) { world.audio.setGrants(false); }) << nothing
            << QStringList{u"on"_s, u"refused 需要麦克风和语音识别权限"_s, u"off"_s};
        QTest::newRow("no recogniser")
            << Step([](World &world) { world.recognizer.setInstalled(false); }) << nothing
            << QStringList{u"on"_s, u"error 当前语言的语音识别暂不可用"_s, u"off"_s};
        QTest::newRow("no microphone") << nothing << fails(AudioFailure::NoDevice)
                                       << QStringList{u"on"_s, u"error 没有找到麦克风"_s, u"off"_s};
        QTest::newRow("microphone refused")
            << nothing << fails(AudioFailure::Refused)
            << QStringList{u"on"_s, u"refused 无法打开麦克风"_s, u"off"_s};
        QTest::newRow("a final result with an error") << nothing << Step([](World &world) {
            world.recognizer.deliver({u"text"_s, true, Result::Failure::Engine});
        }) << QStringList{u"on"_s, u"final text"_s, u"error 语音识别出错"_s, u"off"_s};
        QTest::newRow("unplugged, with something said before") << nothing << Step([](World &world) {
            world.audio.fail(AudioFailure::Lost);
            world.recognizer.deliver({u"text"_s, true});
        }) << QStringList{u"on"_s, u"error 麦克风已断开"_s, u"off"_s, u"final text"_s};
    }

    void whatGoesWrongIsTold()
    {
        QFETCH(const std::function<void(World &)>, before);
        QFETCH(const std::function<void(World &)>, after);
        QFETCH(const QStringList, told);
        if (told.contains(u"error 语音识别出错"_s))
            QTest::ignoreMessage(QtCriticalMsg, "语音识别错误: 语音识别出错");
        if (before)
            before(*m_world);
        m_world->service.start();
        if (after) {
            QTRY_VERIFY(m_world->audio.isRecording());
            after(*m_world);
        }
        QTRY_COMPARE(m_world->told, told);
        QVERIFY(!m_world->audio.isRecording() && !m_world->service.isListening());
    }

    void aStopWhileThePermissionIsAwaitedDoesNotTakeItBack()
    {
        m_world->service.stop();
        m_world->service.start();
        m_world->service.stop();
        QTRY_COMPARE(m_world->told, (QStringList{u"on"_s, u"off"_s, u"on"_s}));
        QVERIFY(m_world->audio.isRecording());
    }

    void aNewDictationGivesUpTheOldOnesLastText()
    {
        listen();
        m_world->service.stop();
        listen();
        QVERIFY(!m_world->recognizer.audioEnded());
        m_world->recognizer.deliver({u"new"_s, true});
        QCOMPARE(m_world->told,
                 (QStringList{u"on"_s, u"off"_s, u"on"_s, u"final new"_s, u"off"_s}));
    }
};

QTEST_GUILESS_MAIN(TestSpeechInputService)
#include "tst_speech_input_service.moc"
