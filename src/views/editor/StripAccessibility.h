#pragma once

namespace tallowbay::views {

// Has assistive programs see the strip as a list, and each screenshot as an item of it that can be
// selected and checked. Once is enough.
void makeStripAccessible();

} // namespace tallowbay::views
