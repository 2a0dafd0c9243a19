#pragma once

#include "base/Geometry.h"
#include "ui/WindowPort.h"

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tallowbay {

class LoaderPort;
class Screens;
class Views;

// A small floating square with the program's mark, which pulses while the editor is being built.
//
// Thread: main queue.
class TallowLoaderPanel {
public:
    // Not shown yet.
    TallowLoaderPanel(const Screens&, Views&);
    ~TallowLoaderPanel();

    // In the middle of the screen with the pointer, else of the main screen. Without any screen it
    // stays where it is.
    void centerOnActiveScreen();
    void orderFront(); // opaque
    void startPulse();

    // The pulse ends, the panel fades out; the completion, which may destroy it, comes when it is
    // off the screen.
    void fadeOut(std::function<void()> completion);

    // What the view shows: a card with the icon on it, in points of the panel.
    static constexpr Size size{88, 88};
    static constexpr WindowLevel level = WindowLevel::floating;
    static constexpr Color background = Color::white(1, 0.93);
    static constexpr double cornerRadius = 20;
    static constexpr Rect iconFrame{{20, 20}, {48, 48}};
    std::string iconName() const { return "MenubarIcon"; }

    // The icon's size over one cycle of the pulse, about its middle: from the first to the second
    // in one half, to the third in the other, each half easing in and out. For ever.
    static constexpr std::array<double, 3> pulseScales{0.72, 1.0, 0.72};
    static constexpr std::chrono::milliseconds pulseCycle{1600};

private:
    const Screens& screens;
    std::unique_ptr<LoaderPort> window;
};

} // namespace tallowbay
