#pragma once

namespace nivora::linuxdesktop {

// Whether the environment names a session bus. The D-Bus libraries would
// otherwise launch one of their own where there is none.
bool isSessionBusNamed();

} // namespace nivora::linuxdesktop
