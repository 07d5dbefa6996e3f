#pragma once

#include "platform/audio_input.h"

namespace nivora::linuxdesktop {

// A microphone that the desktop may keep from all programs: GNOME has a switch for
// it among its privacy settings, which the portal tells to all. Where nobody tells,
// the microphone's own answer holds.
class PortalAudioInput final : public platform::AudioInput
{
public:
    // Borrows the microphone.
    explicit PortalAudioInput(platform::AudioInput &microphone);

    platform::Task requestAccess(std::function<void(bool)> done) override;
    platform::Task record(std::function<void(const QByteArray &)> samples,
                          std::function<void(Failure)> failed) override;

private:
    platform::AudioInput &m_microphone;
};

} // namespace nivora::linuxdesktop
