#include "app/PasteRest.h"

#include "base/PreferenceKeys.h"
#include "platform/Console.h"
#include "platform/Dispatch.h"
#include "platform/KeyTap.h"
#include "platform/Pasteboard.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"
#include "ui/ToastGate.h"

#include <utility>

namespace tallowbay {

using namespace std::chrono_literals;

namespace {

// Between a file and the next one, so that the program has inserted the first.
constexpr auto pauseBetween = 300ms;

// For the program to ask for what was pasted.
constexpr auto programAsksWithin = 3s;

// From one question of a paste to its next.
constexpr auto programReads = 100ms;

// From the key to the question that it provokes.
constexpr auto pasteLasts = 5s;

// Only what was seen to: a program that takes them all would get the rest twice.
bool takesOnlyTheFirst(const std::string& windowClass)
{
    return windowClass == "firefox-esr";
}

} // namespace

PasteRest::PasteRest(
    const Platform& platform, ToastGate& toasts, std::function<void(const Paths&)> write,
    std::function<void()> firePaste)
    : platform(platform)
    , toasts(toasts)
    , write(std::move(write))
    , firePaste(std::move(firePaste))
{
    platform.pasteboard.tellWhenFilesAreTaken(lifetime.guard([this] { filesTaken(); }));
}

void PasteRest::expectPaste()
{
    expectedUntil = platform.clock.monotonicNow() + pasteLasts;
}

void PasteRest::filesTaken()
{
    if (!run) {
        beginIfNeeded();
        return;
    }
    run->lastQuestion = platform.clock.monotonicNow();
    const bool isNext = std::exchange(run->awaitsProgram, false);
    if (isNext)
        ++run->taken;
    if (run->isEnding)
        stopAfterQuestion();
    else if (isNext)
        after(pauseBetween, &PasteRest::pasteNext);
}

void PasteRest::beginIfNeeded()
{
    const NativeWindow window = platform.windowSystem.activeWindow();
    if (platform.clock.monotonicNow() >= expectedUntil
        || !takesOnlyTheFirst(platform.windowSystem.windowClass(window))
        || boolValue(platform.defaults.standard(), preference::pasteRestDisabled))
        return;
    Paths files = platform.pasteboard.readFiles();
    if (files.size() < 2)
        return;
    expectedUntil = {};
    run = Run();
    run->all = std::move(files);
    run->window = window;
    run->content = platform.pasteboard.changeCount();
    run->lastQuestion = platform.clock.monotonicNow();
    run->clicks =
        platform.keyTap.watchClicks([this, clicked = lifetime.guard([this] { interrupt(); })] {
            platform.dispatch.mainAsync(clicked);
        });
    onRunning(true);
    after(pauseBetween, &PasteRest::pasteNext);
}

void PasteRest::pasteNext()
{
    if (!isUndisturbed()) {
        stop();
    } else if (run->taken == run->all.size()) {
        complete();
    } else {
        write(rest());
        run->content = platform.pasteboard.changeCount();
        run->awaitsProgram = true;
        after(programAsksWithin, &PasteRest::stop);
        firePaste();
    }
}

void PasteRest::complete()
{
    const Paths all = std::move(run->all);
    end();
    write(all);
    platform.console.line(">>> Pasted one by one: " + std::to_string(all.size()) + " image(s)");
}

// A paste that is posted is on its way, and what it takes is not left.
void PasteRest::interrupt()
{
    if (!run || std::exchange(run->isEnding, true))
        return;
    if (run->awaitsProgram)
        after(pauseBetween, &PasteRest::stop);
    else
        stopAfterQuestion();
}

// A program that is still reading what was pasted would get something else.
void PasteRest::stopAfterQuestion()
{
    const auto since = platform.clock.monotonicNow() - run->lastQuestion;
    if (since >= programReads)
        stop();
    else
        after(std::chrono::ceil<std::chrono::milliseconds>(programReads - since), &PasteRest::stop);
}

void PasteRest::stop()
{
    const Paths left = rest();
    const bool isOurs = platform.pasteboard.changeCount() == run->content;
    if (left.empty() && isOurs) {
        complete();
        return;
    }
    end();
    if (!isOurs) {
        platform.console.line(">>> Pasting one by one has ended — the clipboard has changed");
        return;
    }
    write(left);
    platform.console.line(
        ">>> Pasting one by one has ended — " + std::to_string(left.size()) + " image(s) left");
    toasts.show(std::to_string(left.size()) + " Screenshot(s) left — paste again");
}

void PasteRest::end()
{
    ++lastStep;
    run.reset();
    onRunning(false);
}

PasteRest::Paths PasteRest::rest() const
{
    return {run->all.begin() + std::ptrdiff_t(run->taken), run->all.end()};
}

bool PasteRest::isUndisturbed() const
{
    return platform.windowSystem.activeWindow() == run->window
        && platform.pasteboard.changeCount() == run->content;
}

// In place of the step that was to come before.
void PasteRest::after(std::chrono::milliseconds time, void (PasteRest::*step)())
{
    platform.dispatch.mainAfter(time, lifetime.guard([this, step, number = ++lastStep] {
        if (number == lastStep)
            (this->*step)();
    }));
}

} // namespace tallowbay
