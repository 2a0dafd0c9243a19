#pragma once

#include "platform/StatusBar.h"

#include <list>

namespace tallowbay::headless {

class HeadlessStatusBar final : public StatusBar {
public:
    struct Item {
        StatusButton button;
        Menu menu;
    };

    std::unique_ptr<StatusItem> makeItem(const StatusButton& button, Menu menu) override;

    // What a person can see.
    std::size_t iconCount() const { return barIsThere ? items.size() : 0; }

    // Chooses a row of the menu of the item that was made last; one without an action does nothing.
    void choose(const std::string& title);

    void middleClick(); // on the item that was made last

    std::list<Item> items; // those that have not gone, in the order they were made
    bool barIsThere = true;
};

} // namespace tallowbay::headless
