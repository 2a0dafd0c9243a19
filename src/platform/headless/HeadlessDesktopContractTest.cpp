#include "platform/contract/AlertsContract.h"
#include "platform/contract/ApplicationContract.h"
#include "platform/contract/CalendarContract.h"
#include "platform/contract/ClockContract.h"
#include "platform/contract/ConsoleContract.h"
#include "platform/contract/EmbeddingTrayContract.h"
#include "platform/contract/PermissionsContract.h"
#include "platform/contract/ResourcesContract.h"
#include "platform/contract/ScreensContract.h"
#include "platform/contract/StatusBarContract.h"
#include "platform/contract/UpdaterContract.h"
#include "platform/contract/WindowSystemContract.h"
#include "platform/headless/Desktop.h"
#include "platform/headless/HeadlessWindows.h"

namespace tallowbay::headless {

namespace {

using namespace std::chrono_literals;

struct HeadlessAlertsBackend {
    HeadlessAlerts headless;

    Alerts& alerts() { return headless; }
    std::size_t openCount() { return headless.openCount(); }
    void press(std::size_t button) { headless.press(button); }
    void closeWindow() { headless.closeWindow(); }
    void settle() { }
};

struct HeadlessApplicationBackend {
    Desktop desktop;

    Application& application() { return desktop.application; }
    Dispatch& dispatch() { return desktop.dispatch; }
    bool run(std::function<void()> shutdown)
    {
        desktop.application.shutdown = std::move(shutdown);
        desktop.dispatch.advance(1s);
        return desktop.application.ended();
    }
};

struct FixedCalendarBackend {
    FixedCalendar fixed;

    const Calendar& calendar() { return fixed; }
    void moveTo(std::chrono::minutes eastOfUtc) { fixed.eastOfUtc = eastOfUtc; }
};

struct HeadlessEmbeddingTrayBackend {
    HeadlessEmbeddingTray headless;
    NativeWindow lastWindow = 0;

    const EmbeddingTray& tray() { return headless; }
    void startTray(std::optional<Color> symbols)
    {
        headless.trayWindow = ++lastWindow;
        headless.symbolColor = symbols;
    }
    void endTray() { headless.trayWindow = 0; }
    void showIcon(const PixelRect&) { headless.iconIsSeen = true; }
    void coverIcon(const PixelRect&) { headless.iconIsSeen = false; }
};

struct VirtualClockBackend {
    Desktop desktop;

    const Clock& clock() { return desktop.clock; }
    void pass(std::chrono::milliseconds time) { desktop.dispatch.advance(time); }
    WallTime dateOfNewFile()
    {
        desktop.files.createFolders("/work");
        desktop.files.create("/home/u/new");
        return desktop.files.creationDate("/home/u/new").value();
    }
};

struct RecordingConsoleBackend {
    RecordingConsole recording;

    Console& console() { return recording; }
    std::string written()
    {
        std::string text;
        for (const auto& line : recording.lines)
            text += line + '\n';
        return text;
    }
    void breakOutput() { recording.failsToWrite = true; }
};

struct HeadlessPermissionsBackend {
    HeadlessPermissions headless;

    const Permissions& permissionsIn(contract::SessionKind kind)
    {
        if (kind != contract::SessionKind::everything)
            headless.refuseKeys();
        if (kind == contract::SessionKind::nothing)
            headless.refuseScreen();
        return headless;
    }
};

struct HeadlessResourcesBackend {
    HeadlessResources headless;

    const Resources& resources() { return headless; }
    std::filesystem::path ship(const std::string& name)
    {
        return headless.executables[name] = "/app" / std::filesystem::path(name);
    }
};

struct HeadlessScreensBackend {
    HeadlessScreens headless;

    const Screens& screensIn(contract::ScreenArrangement arrangement)
    {
        headless.mainSize = Size{1000, 600};
        if (arrangement == contract::ScreenArrangement::none)
            headless.mainSize = std::nullopt;
        if (arrangement == contract::ScreenArrangement::mainRightOfAndBelowAnother)
            headless.others = {{{-300, 600}, {300, 200}}};
        return headless;
    }
    void moveMouseTo(Point place) { headless.mouse = place; }
};

struct HeadlessStatusBarBackend {
    HeadlessStatusBar headless;

    HeadlessStatusBarBackend() { endBar(); }
    StatusBar& bar() { return headless; }
    void startBar() { headless.barIsThere = true; }
    void endBar() { headless.barIsThere = false; }
    bool showsIcons(std::size_t count) { return headless.iconCount() == count; }
    std::vector<contract::SeenRow> menu()
    {
        std::vector<contract::SeenRow> rows;
        for (const MenuItem& item : headless.items.front().menu)
            rows.push_back({item.title, static_cast<bool>(item.action)});
        return rows;
    }
    void choose(const std::string& title) { headless.choose(title); }
    void middleClick() { headless.middleClick(); }
};

struct HeadlessUpdaterBackend {
    std::optional<HeadlessUpdater> headless{std::in_place};

    Updater& updater() { return *headless; }
    void endUpdater() { headless.reset(); }
    void answer(contract::UpdateOutcome)
    {
        if (headless)
            headless->finish("a result");
    }
    bool showsResults(std::size_t count)
    {
        return count == (headless ? headless->results.size() : 0);
    }
    void settle() { }
    int checks() { return headless->checks; }
};

struct HeadlessWindowSystemBackend {
    HeadlessWindowSystem headless;

    WindowSystem& windows() { return headless; }
    NativeWindow window() { return 7; }
    void startComposing() { headless.composes = true; }
    void offerBlur() { headless.blurs = true; }
    void setClass(const std::string& name) { headless.classes[window()] = name; }
    PixelRegion blurredRegion() { return headless.blurred[window()]; }
    PixelRegion shape() { return headless.shapes.at(window()); }
    bool isOffTaskbar() { return headless.offTaskbar.contains(window()); }
    void show() { }
    bool hasKeyboard() { return headless.active == window(); }
};

} // namespace

} // namespace tallowbay::headless

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, AlertsContract, headless::HeadlessAlertsBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ApplicationContract, headless::HeadlessApplicationBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, CalendarContract, headless::FixedCalendarBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ClockContract, headless::VirtualClockBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ConsoleContract, headless::RecordingConsoleBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(
    Headless, EmbeddingTrayContract, headless::HeadlessEmbeddingTrayBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, PermissionsContract, headless::HeadlessPermissionsBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ResourcesContract, headless::HeadlessResourcesBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ScreensContract, headless::HeadlessScreensBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, StatusBarContract, headless::HeadlessStatusBarBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, UpdaterContract, headless::HeadlessUpdaterBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(
    Headless, WindowSystemContract, headless::HeadlessWindowSystemBackend);
} // namespace tallowbay::contract
