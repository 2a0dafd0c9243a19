// The order in which the application starts and stops its parts.

#include "app/AppDelegate.h"

#include "platform/headless/Desktop.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

using Journal = std::vector<std::string>;

// Notes that something begins, and with the token that it ends.
Subscription noted(Journal& journal, const std::string& what, Subscription token)
{
    journal.push_back(what + " begins");
    return Subscription([&journal, what, token = std::make_shared<Subscription>(std::move(token))] {
        token->reset();
        journal.push_back(what + " ends");
    });
}

std::optional<Subscription> noted(
    Journal& journal, const std::string& what, std::optional<Subscription> token)
{
    return token ? std::optional(noted(journal, what, std::move(*token))) : std::nullopt;
}

struct NotedDispatch final : Dispatch {
    NotedDispatch(Dispatch& real, Journal& journal)
        : real(real)
        , journal(journal)
    {
    }
    void mainAsync(Task task) override { real.mainAsync(std::move(task)); }
    void mainAfter(std::chrono::milliseconds delay, Task task) override
    {
        real.mainAfter(delay, std::move(task));
    }
    Subscription repeatEvery(std::chrono::milliseconds interval, Task task) override
    {
        const auto what = "timer of " + std::to_string(interval.count()) + " ms";
        return noted(journal, what, real.repeatEvery(interval, std::move(task)));
    }
    void globalAsync(QualityOfService quality, Task task) override
    {
        real.globalAsync(quality, std::move(task));
    }
    bool waitForBackground(
        const std::function<bool()>& condition, std::chrono::milliseconds limit) override
    {
        return real.waitForBackground(condition, limit);
    }
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override
    {
        return real.makeSerialQueue(label);
    }

    Dispatch& real;
    Journal& journal;
};

struct NotedFileEvents final : FileEvents {
    NotedFileEvents(FileEvents& real, Journal& journal)
        : real(real)
        , journal(journal)
    {
    }
    std::optional<Subscription> start(const Watch& watch, Handlers handlers) override
    {
        return noted(journal, "file events", real.start(watch, std::move(handlers)));
    }

    FileEvents& real;
    Journal& journal;
};

struct NotedFolderEvents final : FolderEvents {
    NotedFolderEvents(FolderEvents& real, Journal& journal)
        : real(real)
        , journal(journal)
    {
    }
    std::optional<Subscription> start(const std::filesystem::path& folder, Handler handler) override
    {
        return noted(journal, "folder events", real.start(folder, std::move(handler)));
    }

    FolderEvents& real;
    Journal& journal;
};

struct NotedKeyTap final : KeyTap {
    NotedKeyTap(KeyTap& real, Journal& journal)
        : real(real)
        , journal(journal)
    {
    }
    std::optional<Subscription> start(Handler handler) override
    {
        return noted(journal, "key tap", real.start(std::move(handler)));
    }
    Subscription watchClicks(std::function<void()> clicked) override
    {
        return real.watchClicks(std::move(clicked));
    }

    KeyTap& real;
    Journal& journal;
};

struct NotedHotkeys final : Hotkeys {
    NotedHotkeys(Hotkeys& real, Journal& journal)
        : real(real)
        , journal(journal)
    {
    }
    Subscription install(Handler handler) override
    {
        journal.push_back("hotkeys are installed");
        return real.install(std::move(handler));
    }
    bool reaches(HotkeyId id) const override { return real.reaches(id); }
    Subscription watchForFreed(std::function<void()> told) override
    {
        return real.watchForFreed(std::move(told));
    }
    std::optional<Subscription> registerHotkey(
        KeyCode key, HotkeyModifiers modifiers, HotkeyId id) override
    {
        const auto what = "hotkey " + std::to_string(id.id);
        return noted(journal, what, real.registerHotkey(key, modifiers, id));
    }

    Hotkeys& real;
    Journal& journal;
};

struct NotedPasteboard final : Pasteboard {
    NotedPasteboard(Pasteboard& real, Journal& journal)
        : real(real)
        , journal(journal)
    {
    }
    void clear() override
    {
        journal.push_back("pasteboard is cleared");
        real.clear();
    }
    void holdPaste(std::chrono::milliseconds limit) override { real.holdPaste(limit); }
    void releasePaste(std::function<void(bool)> ended) override
    {
        real.releasePaste(std::move(ended));
    }
    void dropPaste() override { real.dropPaste(); }
    void tellWhenFilesAreTaken(std::function<void()> taken) override
    {
        real.tellWhenFilesAreTaken(std::move(taken));
    }
    void writeFiles(const std::vector<std::filesystem::path>& files) override
    {
        real.writeFiles(files);
    }
    void writeText(const std::string& text) override { real.writeText(text); }
    std::vector<std::filesystem::path> readFiles() const override { return real.readFiles(); }
    std::int64_t changeCount() const override { return real.changeCount(); }
    bool handOver(std::chrono::milliseconds limit) override { return real.handOver(limit); }

    Pasteboard& real;
    Journal& journal;
};

class AppOrderTest : public testing::Test {
protected:
    AppOrderTest()
    {
        desktop.defaults.standard().set("onboardingCompleted", {true});
        desktop.pasteboard.copyElsewhere({"/home/u/Downloads/Tallowbay/optimized/a.png"});
    }

    Platform platform()
    {
        const Platform all = desktop.platform();
        return {
            dispatch,
            all.clock,
            all.calendar,
            all.console,
            all.fileSystem,
            fileEvents,
            folderEvents,
            all.processes,
            all.resources,
            all.tools,
            all.imageCodec,
            all.offscreenGraphics,
            all.textRecognizer,
            all.defaults,
            all.desktop,
            pasteboard,
            keyTap,
            all.keyPoster,
            hotkeys,
            all.permissions,
            all.statusBar,
            all.alerts,
            all.updater,
            all.application,
            all.screens,
            all.textMeasurer,
            all.windowSystem};
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    Journal journal;
    NotedDispatch dispatch{desktop.dispatch, journal};
    NotedFileEvents fileEvents{desktop.fileEvents, journal};
    NotedFolderEvents folderEvents{desktop.folderEvents, journal};
    NotedPasteboard pasteboard{desktop.pasteboard, journal};
    NotedKeyTap keyTap{desktop.keyTap, journal};
    NotedHotkeys hotkeys{desktop.hotkeys, journal};
    AppDelegate app{platform(), views};
};

TEST_F(AppOrderTest, StartsItsPartsInThisOrder)
{
    app.applicationDidFinishLaunching();
    EXPECT_THAT(
        journal,
        ElementsAre(
            "file events begins", "key tap begins", "hotkeys are installed", "hotkey 1 begins",
            "hotkey 2 begins", "hotkey 4 begins", "hotkey 5 begins", "timer of 30000 ms begins",
            "folder events begins", "timer of 500 ms begins"));
}

TEST_F(AppOrderTest, StopsItsPartsInThisOrder)
{
    app.applicationDidFinishLaunching();
    journal.clear();
    app.applicationWillTerminate();
    EXPECT_THAT(
        journal,
        ElementsAre(
            "key tap ends", "file events ends", "pasteboard is cleared", "timer of 30000 ms ends",
            "timer of 500 ms ends", "folder events ends", "hotkey 1 ends", "hotkey 2 ends",
            "hotkey 4 ends", "hotkey 5 ends"));
}

TEST_F(AppOrderTest, EndsTheWaitForThePermissionBeforeTheOtherTimers)
{
    desktop.permissions.refuseKeys();
    app.applicationDidFinishLaunching();
    journal.clear();
    app.applicationWillTerminate();
    EXPECT_THAT(
        journal,
        ElementsAre(
            "file events ends", "pasteboard is cleared", "timer of 2000 ms ends",
            "timer of 30000 ms ends", "timer of 500 ms ends", "folder events ends", "hotkey 1 ends",
            "hotkey 2 ends", "hotkey 4 ends", "hotkey 5 ends"));
}

// The menu is there from the start, and its "Quit" with it.
TEST_F(AppOrderTest, MayQuitBeforeAnythingWasStarted)
{
    desktop.defaults.standard().remove("onboardingCompleted");
    app.applicationDidFinishLaunching();
    app.applicationWillTerminate();
    EXPECT_THAT(journal, ElementsAre("pasteboard is cleared"));
}

} // namespace
} // namespace tallowbay
