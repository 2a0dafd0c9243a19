#pragma once

#include "platform/Menu.h"

#include <functional>
#include <memory>
#include <string>

namespace tallowbay {

// What stands in the menu bar or tray: a template image, tinted by the platform to suit the bar,
// or a title where there is no image. The bar may give the image another size than it is asked for.
struct StatusButton {
    std::string imageName;
    double imageSizePoints = 0;
    std::string title;
    std::function<void()> onMiddleClick = nullptr; // where the bar tells of it
};

// An icon with a menu, gone when destroyed. It may be destroyed inside an action of its own
// menu or of its button.
class StatusItem {
public:
    virtual ~StatusItem() = default;
};

// Thread: main queue, also for the actions of the menu and the button.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    // Never null. Where no bar is there yet, or it starts anew, the icon appears as soon as there
    // is one. Several items stand beside each other. The menu's rows come in their order, with
    // their titles letter for letter.
    virtual std::unique_ptr<StatusItem> makeItem(const StatusButton&, Menu) = 0;
};

} // namespace tallowbay
