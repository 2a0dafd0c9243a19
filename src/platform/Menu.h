#pragma once

#include <functional>
#include <memory>
#include <optional>
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

// What stands in the menu bar or tray: a template image, tinted by the platform to suit the bar,
// or a title where there is no image.
struct StatusButton {
    std::string imageName;
    double imageSizePoints = 0;
    std::string title;
};

// An icon with a menu, gone when destroyed.
class StatusItem {
public:
    virtual ~StatusItem() = default;
};

// Thread: main queue, also for the menu's actions.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    // Never null. Where no bar is there yet, the icon appears as soon as there is one.
    virtual std::unique_ptr<StatusItem> makeItem(const StatusButton&, Menu) = 0;
};

} // namespace tallowbay
