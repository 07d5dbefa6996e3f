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

    void theResultIsReadAloudAlsoAfterTheServiceWasKilled();
    void withoutASpeechServiceTheButtonSaysSo();
    void whatIsSaidIsTranslated_data();
    void whatIsSaidIsTranslated();

private:
    std::optional<AccessibleElement> translateAndFindTheButton()
    {
        m_road->server.enqueue(eventStream({m_japanese}));
        if (!m_road->open(Editor::Toolkit::Gtk, u"请发一下报价"_s))
            return std::nullopt;
        m_road->pull(Trigger::DoubleShift);
        if (!m_road->product->waitForTranslation(m_japanese, patience))
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

void TestSpeech::theResultIsReadAloudAlsoAfterTheServiceWasKilled()
{
    QVERIFY2(m_road->begin(), qUtf8Printable(m_road->problem()));
    const auto speak = translateAndFindTheButton();
    QVERIFY2(speak, qUtf8Printable(m_road->problem()));
    const auto look = [&] { return m_road->user->picture(speak->frame()); };
    const auto sounds = [&] { return m_sound->isSounding(); };
    const QImage silent = look();

    QVERIFY(speak->press());
    QVERIFY2(waitUntil(sounds, 20s), qUtf8Printable(m_road->problem()));
    QVERIFY(look() != silent); // now it stops
    QVERIFY(speak->press());
    QVERIFY(waitUntil([&] { return look() == silent; }, patience));
    QVERIFY(waitUntil([&] { return !sounds(); }, patience));

    QVERIFY(speak->press());
    QVERIFY(waitUntil(sounds, 20s));
    const QImage speaking = look();
    QFile file(m_road->session.folder() + u"/run/speech-dispatcher/pid/speech-dispatcher.pid"_s);
    QVERIFY2(file.open(QIODevice::ReadOnly), qUtf8Printable(file.fileName()));
    QCOMPARE(kill(pid_t(file.readAll().trimmed().toInt()), SIGKILL), 0);
    QVERIFY(waitForLog(u"The speech service is gone"_s));
    QVERIFY(waitUntil([&] { return look() != speaking; }, patience));
    QVERIFY(waitUntil([&] { return !sounds(); }, patience));
    QVERIFY(speak->press());
    QVERIFY2(waitUntil([&] { return sounds() && look() == speaking; }, 20s),
             qUtf8Printable(m_road->problem()));
}

void TestSpeech::withoutASpeechServiceTheButtonSaysSo()
{
    // Not one that is started where it does not run.
    qputenv("SPEECHD_ADDRESS", "unix_socket:/nowhere/at/all");
    m_road.emplace();
    QVERIFY2(m_road->begin(), qUtf8Printable(m_road->problem()));
    const auto speak = translateAndFindTheButton();
    QVERIFY2(speak, qUtf8Printable(m_road->problem()));
    const QImage willing = m_road->user->picture(speak->frame());
    QVERIFY(speak->press());
    QVERIFY(waitForLog(u"No speech service: nothing is read aloud"_s));
    QVERIFY(waitUntil([&] { return m_road->user->picture(speak->frame()) != willing; }, patience));
    QVERIFY(speak->press());
    QVERIFY(m_road->product->waitForTranslation(m_japanese, patience));
}

void TestSpeech::whatIsSaidIsTranslated_data()
{
    QTest::addColumn<bool>("unplugged");
    QTest::newRow("ended by its button") << false;
    QTest::newRow("ended by unplugging the microphone") << true;
}

void TestSpeech::whatIsSaidIsTranslated()
{
    QFETCH(const bool, unplugged);
    QVERIFY(m_sound->plugInMicrophone());
    QVERIFY2(m_road->begin({{u"defaultTargetLanguage"_s, u"english"_s}}),
             qUtf8Printable(m_road->problem()));
    const auto &product = m_road->product;
    m_road->server.enqueue(eventStream({u"天気"_s}));
    QVERIFY2(m_road->open(Editor::Toolkit::Gtk, {}, false), qUtf8Printable(m_road->problem()));
    m_road->pull(Trigger::DoubleShift);
    QVERIFY2(product->waitForPanel(patience), qUtf8Printable(m_road->problem()));
    const auto source = product->waitForControl(u"原文"_s, patience);
    const auto microphone = product->waitForControl(u"语音输入"_s, patience);
    QVERIFY2(source && microphone && waitUntil([&] { return source->isFocused(); }, patience),
             qUtf8Printable(m_road->problem()));

    QVERIFY(microphone->press());
    QVERIFY2(waitUntil([&] { return m_sound->isHeard(); }, 20s), qUtf8Printable(m_road->problem()));
    QProcess *const voice = m_sound->say(u"the weather is very nice today"_s);
    QVERIFY(voice);
    QVERIFY2(waitUntil([&] { return source->text().contains(u"weather"_s); }, 20s),
             qUtf8Printable(u"heard: %1\n%2"_s.arg(source->text(), m_road->problem())));
    QVERIFY(waitUntil([&] { return voice->state() == QProcess::NotRunning; }, patience));
    QVERIFY(unplugged ? m_sound->unplugMicrophone() : microphone->press());
    QVERIFY2(product->waitForTranslation(u"天気"_s, 20s), qUtf8Printable(m_road->problem()));
    QVERIFY(source->text().contains(u"weather"_s));
    QVERIFY2(m_road->prompt(0).endsWith(source->text()), qUtf8Printable(m_road->prompt(0)));
    QCOMPARE(product->control(u"麦克风已断开"_s).has_value(), unplugged);
}

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
