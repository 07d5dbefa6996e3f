#include "platform_linux/heap_limits.h"

#include <malloc.h>

namespace nivora::linuxdesktop {

void limitHeaps()
{
#ifdef M_ARENA_MAX // other C libraries share theirs anyway
    mallopt(M_ARENA_MAX, 2);
    // Both are the library's to change until one has been set.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
#endif
}

} // namespace nivora::linuxdesktop
