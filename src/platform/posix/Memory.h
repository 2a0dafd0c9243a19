#pragma once

namespace tallowbay::posix {

// From now on memory of the size of a screen's picture goes back to the system as soon as it is
// freed. Left to itself, the library keeps such blocks from the second one on, and the editor would
// hold a hundred megabytes more than it uses.
//
// Thread: before any other is started.
void giveLargeBlocksBack();

} // namespace tallowbay::posix
