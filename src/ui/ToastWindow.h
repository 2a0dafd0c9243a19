#pragma once

#include "base/Lifetime.h"
#include "platform/Screens.h"
#include "platform/TextMeasurer.h"
#include "ui/ToastContent.h"
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
    ToastWindow(Dispatch&, Views&, const ToastContent&);

    // Shows the message from beginning to end. Calls onStanding when it is faded in, and onClosed
    // when it is off the screen; either may destroy this object.
    void fadeIn(std::function<void()> onStanding, std::function<void()> onClosed);

    const Rect& frame() const { return place; }
    bool isFadingIn() const { return fadingIn; }

private:
    void stand();
    void fadeOut();

    Dispatch& dispatch;
    const Rect place;
    std::unique_ptr<WindowPort> window;
    bool fadingIn = false;
    std::function<void()> onStanding;
    std::function<void()> onClosed;
    Lifetime lifetime;
};

// Shows toasts. Two in quick succession lie on top of each other, the newer above, each with its
// own timing. Whether the user wants toasts is the caller's question.
//
// Of very many at once no more are made than can be told apart. Once several have come in quick
// succession, the next one waits for the newest to be faded in, and is not made at all if meanwhile
// another one comes that would cover it whole; and one that two others cover whole leaves early.
class ToastPresenter {
public:
    ToastPresenter(Dispatch&, const Screens&, const TextMeasurer&, Views&);

    // Thread: any; the work is done on the main queue.
    void show(std::string message);

private:
    void present(std::string message);
    void wait(ToastContent);
    void showWaiting();
    void begin(const ToastContent&);
    void closeCovered();
    bool isCovered(std::list<ToastWindow>::const_iterator) const;

    Dispatch& dispatch;
    const Screens& screens;
    const TextMeasurer& measurer;
    Views& views;
    std::list<ToastWindow> active; // keeps them alive while they are animated; the newest is last
    std::list<ToastContent> waiting; // the newest is last
    int begunLately = 0;
    Lifetime lifetime;
};

// The window's frame for a message of that width, in points, on the main screen.
Rect toastFrame(const std::optional<Rect>& mainScreen, double textWidth);

} // namespace tallowbay
