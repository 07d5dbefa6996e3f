#include "platform_linux/portal_audio_input.h"

#include "portal_settings.h"

#include <QDBusPendingCallWatcher>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

const auto privacySettings = u"org.gnome.desktop.privacy"_s;
const auto disableMicrophone = u"disable-microphone"_s;

class AccessOperation final : public platform::Operation
{
public:
    AccessOperation(platform::AudioInput &microphone, std::function<void(bool)> done)
        : m_microphone(microphone)
        , m_done(std::move(done))
        , m_answer(
              std::make_unique<QDBusPendingCallWatcher>(portal::readSettings({privacySettings})))
    {
        connect(
            m_answer.get(), &QDBusPendingCallWatcher::finished, this, [this] { answered(); },
            Qt::QueuedConnection);
    }

private:
    void answered()
    {
        const portal::Answer reply(*m_answer);
        const QVariant disabled =
            reply.isError() ? QVariant()
                            : reply.value().value(privacySettings).value(disableMicrophone);
        if (portal::unwrapped(disabled).toBool())
            return tell(false);
        m_request = m_microphone.requestAccess([this](bool granted) { tell(granted); });
    }
    void tell(bool granted)
    {
        finish([&] { m_done(granted); });
    }
    void stop() override
    {
        m_answer.reset();
        m_request.cancel();
    }

    platform::AudioInput &m_microphone;
    std::function<void(bool)> m_done;
    std::unique_ptr<QDBusPendingCallWatcher> m_answer;
    platform::Task m_request;
};

} // namespace

PortalAudioInput::PortalAudioInput(platform::AudioInput &microphone)
    : m_microphone(microphone)
{
}

platform::Task PortalAudioInput::requestAccess(std::function<void(bool)> done)
{
    if (!portal::isReachable())
        return m_microphone.requestAccess(std::move(done));
    return platform::Task(new AccessOperation(m_microphone, std::move(done)));
}

platform::Task PortalAudioInput::record(std::function<void(const QByteArray &)> samples,
                                        std::function<void(Failure)> failed)
{
    return m_microphone.record(std::move(samples), std::move(failed));
}

} // namespace nivora::linuxdesktop
