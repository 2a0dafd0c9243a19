#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tallowbay {

// One row of a menu. Without an action it is shown disabled.
struct MenuItem {
    std::string title;
    std::function<void()> action;
    std::string keyEquivalent; // with the Command modifier; empty for none
    std::string symbol; // the system symbol beside the title, such as "xmark"; empty for none
    bool separator = false;

    static MenuItem makeSeparator()
    {
        MenuItem item;
        item.separator = true;
        return item;
    }
};

using Menu = std::vector<MenuItem>;

} // namespace tallowbay
