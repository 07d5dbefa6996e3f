#include "support/sound_server.h"

#include "child_process.h"
#include "support/wait.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::test {

namespace {

constexpr int answerLimit = 5000; // milliseconds

} // namespace

SoundServer::SoundServer(const QString &folder)
    : m_folder(folder)
{
}

SoundServer::~SoundServer()
{
    if (m_voice)
        endProcess(*m_voice);
    if (m_server)
        endProcess(*m_server);
}

QString SoundServer::address() const
{
    return u"unix:"_s + m_folder + u"/sound"_s;
}

bool SoundServer::start()
{
    m_server = makeChildProcess();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, m_folder);
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder);
    environment.insert(u"XDG_CONFIG_HOME"_s, m_folder);
    m_server->setProcessEnvironment(environment);
    m_server->setStandardErrorFile(QProcess::nullDevice());
    m_server->start(
        u"pulseaudio"_s,
        {u"-n"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--exit-idle-time=-1"_s,
         u"--disable-shm=yes"_s, u"-L"_s, u"module-null-sink sink_name=loudspeaker"_s, u"-L"_s,
         u"module-native-protocol-unix auth-anonymous=1 socket=%1/sound"_s.arg(m_folder)});
    return m_server->waitForStarted(answerLimit) &&
           waitUntil([this] { return control({u"info"_s}).has_value(); }, 10s);
}

std::optional<QByteArray> SoundServer::control(const QStringList &arguments) const
{
    QProcess pactl;
    pactl.setStandardErrorFile(QProcess::nullDevice());
    pactl.start(u"pactl"_s, QStringList{u"--server"_s, address()} + arguments);
    if (!pactl.waitForFinished(answerLimit) || pactl.exitCode() != 0)
        return std::nullopt;
    return pactl.readAllStandardOutput().trimmed();
}

// Programs do not offer the monitor of a sink as a microphone, so it is given another
// face.
bool SoundServer::plugInMicrophone()
{
    for (const auto &module : {QStringList{u"module-null-sink"_s, u"sink_name=air"_s},
                               QStringList{u"module-remap-source"_s, u"source_name=microphone"_s,
                                           u"master=air.monitor"_s}}) {
        const auto number = control(QStringList{u"load-module"_s} + module);
        if (!number)
            return false;
        m_microphone.push_back(*number);
    }
    return control({u"set-default-source"_s, u"microphone"_s}) &&
           control({u"set-default-sink"_s, u"loudspeaker"_s});
}

bool SoundServer::unplugMicrophone()
{
    bool unplugged = true;
    for (; !m_microphone.empty(); m_microphone.pop_back()) {
        const auto number = QString::fromLatin1(m_microphone.back());
        unplugged = control({u"unload-module"_s, number}) && unplugged;
    }
    return unplugged;
}

QProcess *SoundServer::say(const QString &sentence)
{
    const QString recording = m_folder + u"/sentence.wav"_s;
    if (QProcess::execute(u"flite"_s,
                          {u"-voice"_s, u"slt"_s, u"-t"_s, sentence, u"-o"_s, recording}) != 0)
        return nullptr;
    m_voice = makeChildProcess();
    m_voice->start(u"paplay"_s, {u"--server"_s, address(), u"--device=air"_s, recording});
    return m_voice->waitForStarted(answerLimit) ? m_voice.get() : nullptr;
}

bool SoundServer::isHeard() const
{
    const auto listeners = control({u"list"_s, u"short"_s, u"source-outputs"_s});
    return listeners && listeners->contains("protocol-native"); // not the remapped source
}

// Programs keep their stream open when they are silent, so the sound itself is heard.
bool SoundServer::isSounding() const
{
    QProcess ear;
    ear.start(u"parec"_s, {u"--server"_s, address(), u"--device=loudspeaker.monitor"_s,
                           u"--rate=8000"_s, u"--channels=1"_s, u"--latency-msec=50"_s});
    constexpr qsizetype enough = 8000 * 2 / 4; // bytes: a quarter of a second
    while (ear.bytesAvailable() < enough && ear.waitForReadyRead(answerLimit)) {
    }
    const QByteArray sound = ear.readAllStandardOutput();
    ear.kill();
    ear.waitForFinished(answerLimit);
    return sound.count('\0') < sound.size();
}

} // namespace nivora::test
