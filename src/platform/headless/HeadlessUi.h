#pragma once

#include "platform/Alerts.h"
#include "platform/Application.h"
#include "platform/Dispatch.h"
#include "platform/Menu.h"
#include "platform/Screens.h"
#include "platform/StatusBar.h"
#include "platform/TextMeasurer.h"
#include "platform/ToastViews.h"
#include "platform/Updater.h"
#include "platform/WindowPort.h"

#include <algorithm>
#include <list>
#include <utility>
#include <vector>

namespace tallowbay::headless {

class HeadlessStatusBar final : public StatusBar {
public:
    struct Shown {
        StatusButton button;
        Menu menu;
    };

    std::unique_ptr<StatusItem> makeItem(const StatusButton& button, Menu menu) override;

    std::list<Shown> items;
};

class HeadlessAlerts final : public Alerts {
public:
    Subscription showWarning(const Alert& alert, Answer answer) override;

    // Presses a button of the alert that is open.
    void press(std::size_t button);
    bool open() const { return static_cast<bool>(waiting); }

    std::vector<Alert> shown;

private:
    Answer waiting;
};

class HeadlessUpdater final : public Updater {
public:
    void checkForUpdates() override { ++checks; }

    int checks = 0;
};

class HeadlessApplication final : public Application {
public:
    void terminate() override { ++terminations; }

    int terminations = 0;
};

class HeadlessScreens final : public Screens {
public:
    std::optional<Rect> mainFrame() const override { return frame; }

    std::optional<Rect> frame = Rect{{0, 0}, {1920, 1080}};
};

// Every byte of a text is half as wide as the font is high.
class HeadlessTextMeasurer final : public TextMeasurer {
public:
    Size measure(const std::string& text, const Font& font) const override
    {
        std::size_t lines = 0;
        std::size_t longest = 0;
        for (std::size_t begin = 0; begin <= text.size(); ++lines) {
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            longest = std::max(longest, end - begin);
            begin = end + 1;
        }
        return {
            font.sizePoints / 2 * static_cast<double>(longest),
            font.sizePoints * 1.25 * static_cast<double>(lines)};
    }
};

// What happened to a toast's window, in order.
struct ToastRecord {
    ToastContent content;
    std::vector<std::string> journal;
    double alpha = 1;
    bool onScreen = false;
    bool alive = true;
};

// Animations take their time on the given dispatch; alpha jumps at their end.
class HeadlessToasts final : public ToastViews {
public:
    explicit HeadlessToasts(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    std::unique_ptr<WindowPort> make(const ToastContent& content) override;

    std::vector<std::string> messages() const;

    std::vector<std::shared_ptr<ToastRecord>> made;

private:
    Dispatch& dispatch;
};

} // namespace tallowbay::headless
