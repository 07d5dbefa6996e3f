#include "road.h"

#include "support/sound_server.h"

#include "localcloud/event_stream.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;
using localcloud::eventStream;

// Reading aloud and dictation with a real sound server, speech service and recogniser.
class TestSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_sound.emplace(m_folder.path());
        QVERIFY2(m_sound->start(), "PulseAudio cannot be run");
        qputenv("PULSE_SERVER", m_sound->address().toUtf8());
        m_road.emplace();
    }
    void cleanup()
    {
        m_road.reset();
        m_sound.reset();
        qunsetenv("SPEECHD_ADDRESS");
    }

    void theResultIsReadAloudAlsoAfterTheServiceWasKilled()
    {
        QVERIFY(m_road->begin());
        const auto speak = translateAndFindTheButton();
        QVERIFY(speak);
        const auto look = [&] { return m_road->user->picture(speak->frame()); };
        const auto sounds = [&] { return m_sound->isSounding(); };
        const QImage silent = look();

        QVERIFY(speak->press());
        QVERIFY(waitUntil(sounds, 20s));
        QVERIFY(look() != silent); // now it stops
        QVERIFY(speak->press());
        QVERIFY(waitUntil([&] { return look() == silent; }, patience));
        QVERIFY(waitUntil([&] { return !sounds(); }, patience));

        QVERIFY(speak->press());
        QVERIFY(waitUntil(sounds, 20s));
        const QImage speaking = look();
        QFile file(m_road->session.folder() +
                   u"/run/speech-dispatcher/pid/speech-dispatcher.pid"_s);
        QVERIFY2(file.open(QIODevice::ReadOnly), qUtf8Printable(file.fileName()));
        QCOMPARE(kill(pid_t(file.readAll().trimmed().toInt()), SIGKILL), 0);
        QVERIFY(waitForLog(u"The speech service is gone"_s));
        QVERIFY(waitUntil([&] { return look() != speaking; }, patience));
        QVERIFY(waitUntil([&] { return !sounds(); }, patience));
        QVERIFY(speak->press());
        QVERIFY(waitUntil([&] { return sounds() && look() == speaking; }, 20s));
    }

    void whatIsSaidIsTranslated_data()
    {
        QTest::addColumn<bool>("unplugged");
        QTest::newRow("ended by its button") << false;
        QTest::newRow("ended by unplugging the microphone") << true;
    }

    void whatIsSaidIsTranslated()
    {
        QFETCH(const bool, unplugged);
        QVERIFY(m_sound->plugInMicrophone());
        QVERIFY(m_road->begin({{u"defaultTargetLanguage"_s, u"english"_s}}));
        const auto &product = m_road->product;
        m_road->server.enqueue(eventStream({u"天気"_s}));
        QVERIFY(m_road->open(Editor::Toolkit::Gtk, {}, false));
        m_road->pull(Trigger::DoubleShift);
        QVERIFY(product->waitForPanel(patience));
        const auto source = product->waitForControl(u"原文"_s, patience);
        const auto microphone = product->waitForControl(u"语音输入"_s, patience);
        QVERIFY(source && microphone && waitUntil([&] { return source->isFocused(); }, patience));

        QVERIFY(microphone->press());
        QVERIFY(waitUntil([&] { return m_sound->isHeard(); }, 20s));
        QProcess *const voice = m_sound->say(u"the weather is very nice today"_s);
        QVERIFY(voice);
        QVERIFY2(waitUntil([&] { return source->text().contains(u"weather"_s); }, 20s),
                 qUtf8Printable(source->text()));
        QVERIFY(waitUntil([&] { return voice->state() == QProcess::NotRunning; }, patience));
        QVERIFY(unplugged ? m_sound->unplugMicrophone() : microphone->press());
        QVERIFY(product->waitForTranslation(u"天気"_s, 20s));
        QVERIFY(source->text().contains(u"weather"_s));
        QVERIFY2(m_road->prompt(0).endsWith(source->text()), qUtf8Printable(m_road->prompt(0)));
        QCOMPARE(product->control(u"麦克风已断开"_s).has_value(), unplugged);
    }

private:
    std::optional<AccessibleElement> translateAndFindTheButton()
    {
        if (!m_road->translate(u"请发一下报价"_s, m_japanese))
            return std::nullopt;
        return m_road->product->waitForControl(u"朗读"_s, patience);
    }
    bool waitForLog(const QString &line) const
    {
        return waitUntil([&] { return m_road->product->log().contains(line); }, 20s);
    }

    const QString m_japanese = u"見積もりを送ってください"_s.repeated(20);
    QTemporaryDir m_folder;
    std::optional<SoundServer> m_sound;
    std::optional<Road> m_road;
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
