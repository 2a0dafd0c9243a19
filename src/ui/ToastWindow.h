#pragma once

#include "base/Lifetime.h"
#include "platform/Screens.h"
#include "platform/TextMeasurer.h"
#include "ui/WindowPort.h"

#include <list>
#include <memory>
#include <string>

namespace tallowbay {

class Dispatch;
class Views;

// One message in the middle of the main screen, which fades in, stays a moment and fades out. It
// takes neither focus nor clicks.
//
// Thread: main queue.
class ToastWindow {
public:
    ToastWindow(Dispatch&, const Screens&, const TextMeasurer&, Views&, std::string message);

    // Shows the message from beginning to end; calls onClosed when it is off the screen, which may
    // destroy this object.
    void fadeIn(std::function<void()> onClosed);

private:
    void fadeOut();

    Dispatch& dispatch;
    std::unique_ptr<WindowPort> window;
    std::function<void()> onClosed;
    Lifetime lifetime;
};

// Shows toasts. Two in quick succession lie on top of each other, the newer above, each with its
// own timing. Whether the user wants toasts is the caller's question.
class ToastPresenter {
public:
    ToastPresenter(Dispatch&, const Screens&, const TextMeasurer&, Views&);

    // Thread: any; the work is done on the main queue.
    void show(std::string message);

private:
    void present(std::string message);

    Dispatch& dispatch;
    const Screens& screens;
    const TextMeasurer& measurer;
    Views& views;
    std::list<ToastWindow> active; // keeps them alive while they are animated
    Lifetime lifetime;
};

// The window's frame for a message of that width, in points, on the main screen.
Rect toastFrame(const std::optional<Rect>& mainScreen, double textWidth);

} // namespace tallowbay
