#include "platform/posix/watch/WatchedRoot.h"

#include <sys/inotify.h>

namespace tallowbay::posix {

bool WatchedRoot::isConcerned(const InotifyEvent& event) const
{
    return tree.isRoot(event.watch)
        && (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED));
}

} // namespace tallowbay::posix
