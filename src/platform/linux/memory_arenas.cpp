#include "platform_linux/memory_arenas.h"

#include <malloc.h>

namespace nivora::linuxdesktop {

void shareMemoryArenas()
{
#ifdef M_ARENA_MAX // other C libraries share theirs anyway
    mallopt(M_ARENA_MAX, 2);
#endif
}

} // namespace nivora::linuxdesktop
