#include "platform_linux/core_dumps.h"

#include <algorithm>
#include <sys/resource.h>

namespace nivora::linuxdesktop {

void forbidCoreDumps()
{
    // core(5): with 0 the kernel still hands the memory to a crash reporter, with 1 it
    // hands it to nobody, and no file is as short as that.
    constexpr rlim_t nothing = 1;
    rlimit limit = {};
    if (getrlimit(RLIMIT_CORE, &limit) != 0)
        return;
    limit.rlim_cur = std::min(nothing, limit.rlim_max);
    setrlimit(RLIMIT_CORE, &limit);
}

} // namespace nivora::linuxdesktop
