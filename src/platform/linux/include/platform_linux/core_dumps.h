#pragma once

namespace nivora::linuxdesktop {

// No crash of this process, or of the helpers that it starts, leaves its memory in a
// file or with the system's crash reporter.
//
// A limit on core dumps, and not PR_SET_DUMPABLE: a process that is not dumpable has a
// /proc folder that only root can open, and xdg-desktop-portal looks there before it
// answers. Only the soft limit is set, which a program started from here may raise.
void forbidCoreDumps();

} // namespace nivora::linuxdesktop
