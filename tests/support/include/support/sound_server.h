#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace nivora::test {

// A sound server of its own, with a loudspeaker that nobody hears and a microphone
// that can be plugged in and spoken into. Ends with this object.
class SoundServer
{
public:
    // `folder` takes its socket, and keeps the recorded sentences.
    explicit SoundServer(const QString &folder);
    ~SoundServer();

    // Waits until it answers. False when PulseAudio cannot be run.
    bool start();
    // For PULSE_SERVER.
    QString address() const;

    bool plugInMicrophone();
    bool unplugMicrophone();

    // Starts to say the sentence into the microphone, in a voice that recognisers
    // understand. Null when that cannot be done.
    QProcess *say(const QString &sentence);

    // Whether a program listens to the microphone.
    bool isHeard() const;
    // Whether something comes out of the loudspeaker.
    bool isSounding() const;

private:
    // What pactl prints; absent when it fails.
    std::optional<QByteArray> control(const QStringList &arguments) const;

    QString m_folder;
    std::unique_ptr<QProcess> m_server;
    std::vector<QByteArray> m_microphone; // numbers of its modules
    std::unique_ptr<QProcess> m_voice;
};

} // namespace nivora::test
