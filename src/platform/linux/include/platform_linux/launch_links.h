#pragma once

#include <QStringList>

namespace nivora::linuxdesktop {

// The links of the program's own scheme, "nivora:", among the arguments that it
// was started with. They are gone from the arguments afterwards, and from what
// other programs can read of them: a link may hold a token. To be called before
// anything else looks at the arguments.
QStringList takeLaunchLinks(int &argc, char **argv);

} // namespace nivora::linuxdesktop
