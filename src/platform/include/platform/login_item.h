#pragma once

#include <QString>

#include <optional>

namespace nivora::platform {

// Whether the desktop starts this program when the user logs in.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    // As the desktop would see it now: also where the user switched it off in
    // the desktop's own settings.
    virtual bool isEnabled() const = 0;

    // Absent on success, otherwise what went wrong. Enabling what is enabled, and
    // disabling what is not, succeeds.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;
};

} // namespace nivora::platform
