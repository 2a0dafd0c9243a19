#pragma once

#include "platform/Menu.h"

#include <memory>
#include <string>

namespace tallowbay {

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
