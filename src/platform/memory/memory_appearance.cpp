#include "platform_memory/memory_appearance.h"

#include <QTimer>

namespace nivora::memory {

class MemoryAppearance::Watch final : public platform::Operation
{
public:
    Watch(std::function<void(const platform::DesktopAppearance &)> changed,
          std::shared_ptr<Watch *> place)
        : m_changed(std::move(changed))
        , m_place(std::move(place))
    {
        *m_place = this;
    }

    void tell(const platform::DesktopAppearance &appearance)
    {
        QTimer::singleShot(0, this,
                           [this, appearance] { deliver([&] { m_changed(appearance); }); });
    }

private:
    void stop() override { *m_place = nullptr; }

    std::function<void(const platform::DesktopAppearance &)> m_changed;
    std::shared_ptr<Watch *> m_place;
};

platform::Task
MemoryAppearance::watch(std::function<void(const platform::DesktopAppearance &)> changed)
{
    m_watch = std::make_shared<Watch *>();
    auto *watch = new Watch(std::move(changed), m_watch);
    if (m_now)
        watch->tell(*m_now);
    return platform::Task(watch);
}

void MemoryAppearance::set(const platform::DesktopAppearance &appearance)
{
    m_now = appearance;
    if (m_watch && *m_watch)
        (*m_watch)->tell(appearance);
}

} // namespace nivora::memory
