#include "platform/posix/Memory.h"

#include <malloc.h>

namespace tallowbay::posix {

void giveLargeBlocksBack()
{
    constexpr int largeBlock = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, largeBlock);
}

} // namespace tallowbay::posix
