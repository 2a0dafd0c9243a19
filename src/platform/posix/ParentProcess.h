#pragma once

namespace tallowbay::posix {

// A tool that stands before the user ends with the program that started it, however that ends.

// For the program: its children may know it as their parent. Thread: before any other is started.
void beKnownToChildren();

// For the tool: from now on it is told to end (SIGTERM) when its parent is gone. Does nothing if
// somebody else has started it, who may well go before it.
void endWithParent();

} // namespace tallowbay::posix
