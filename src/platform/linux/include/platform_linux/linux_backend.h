#pragma once

#include "platform/services.h"

#include <memory>

namespace nivora::linuxdesktop {

// Every service of the platform, on the desktop that the environment names.
class LinuxBackend
{
public:
    LinuxBackend();
    ~LinuxBackend();

    // False where there is no X server, without which the program can do nothing.
    bool isValid() const;

    // Borrows from this object.
    platform::Services services();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora::linuxdesktop
