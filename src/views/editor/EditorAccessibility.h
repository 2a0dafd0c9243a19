#pragma once

namespace tallowbay::views {

// Has assistive programs see the strip as a list, and each screenshot as an item of it that can be
// selected and checked; the canvas as what is drawn on, the cards with buttons as tool bars. Holds
// for the widgets that are made afterwards. Once is enough.
void makeEditorAccessible();

} // namespace tallowbay::views
