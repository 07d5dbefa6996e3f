#pragma once

namespace nivora {

namespace platform {
class LoginItem;
}

// Switches starting at login on and off.
class LoginItemManager
{
public:
    explicit LoginItemManager(platform::LoginItem &item)
        : m_item(item)
    {
    }

    bool isEnabled() const;

    // True if the desktop accepted the change; a refusal is logged.
    bool set(bool enabled);

private:
    platform::LoginItem &m_item;
};

} // namespace nivora
