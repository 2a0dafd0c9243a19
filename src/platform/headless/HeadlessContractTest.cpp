#include "platform/contract/DispatchContract.h"
#include "platform/contract/FileEventsContract.h"
#include "platform/contract/FileSystemContract.h"
#include "platform/contract/FolderEventsContract.h"
#include "platform/contract/HotkeysContract.h"
#include "platform/contract/ImageCodecContract.h"
#include "platform/contract/KeyPosterContract.h"
#include "platform/contract/KeyTapContract.h"
#include "platform/contract/OffscreenGraphicsContract.h"
#include "platform/contract/PasteboardContract.h"
#include "platform/contract/ProcessesContract.h"
#include "platform/contract/TextMeasurerContract.h"
#include "platform/contract/UserDefaultsContract.h"
#include "platform/headless/Desktop.h"
#include "platform/headless/PlainImageCodec.h"
#include "platform/headless/RecordingGraphics.h"

#include <algorithm>

namespace tallowbay::headless {

namespace {

using namespace std::chrono_literals;

struct VirtualDispatchBackend {
    Desktop desktop;

    Dispatch& dispatch() { return desktop.dispatch; }
    MonotonicTime now() { return desktop.clock.monotonicNow(); }
    void pass(std::chrono::milliseconds time) { desktop.dispatch.advance(time); }
    bool runUntil(const std::function<bool()>& condition)
    {
        for (int i = 0; i < 10'000 && !condition(); ++i) {
            desktop.dispatch.runUntilIdle();
            desktop.dispatch.advance(condition() ? 0ms : 1ms);
        }
        return condition();
    }
};

struct MemoryFileBackend {
    Desktop desktop;

    MemoryFileBackend() { desktop.files.createFolders("/work"); }
    FileSystem& files() { return desktop.files; }
    std::filesystem::path folder() { return "/work"; }
    WallTime now() { return desktop.clock.wallNow(); }
    void rename(const std::filesystem::path& from, const std::filesystem::path& to)
    {
        desktop.files.rename(from, to);
    }
    void awaitNextDate() { }
};

struct HandFedHotkeysBackend : VirtualDispatchBackend {
    Hotkeys& hotkeys() { return desktop.hotkeys; }
    void press(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        desktop.hotkeys.press(keyCode, modifiers);
    }
    void takeElsewhere(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        desktop.hotkeys.takeElsewhere(keyCode, modifiers);
    }
    void giveBackElsewhere(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        desktop.hotkeys.giveBackElsewhere(keyCode, modifiers);
        desktop.hotkeys.tellFreed();
    }
};

struct MemoryEventsBackend {
    Desktop desktop;

    MemoryEventsBackend() { makeFolder(root() / "watched"); }
    FileEvents& events() { return desktop.fileEvents; }
    FolderEvents& folderEvents() { return desktop.folderEvents; }
    std::filesystem::path root() { return "/work"; }

    void write(const std::filesystem::path& path) { desktop.files.create(path); }
    void beginWriting(const std::filesystem::path& path) { desktop.files.beginWriting(path); }
    void finishWriting(const std::filesystem::path& path) { desktop.files.finishWriting(path); }
    void rename(const std::filesystem::path& from, const std::filesystem::path& to)
    {
        desktop.files.rename(from, to);
    }
    void remove(const std::filesystem::path& path) { desktop.files.remove(path); }
    void makeFolder(const std::filesystem::path& path) { desktop.files.createFolders(path); }

    bool runUntil(const std::function<bool()>& condition)
    {
        settle();
        return condition();
    }
    void settle() { desktop.dispatch.advance(10s); }
};

struct ScriptedProcessesBackend {
    ScriptedProcesses scripted;
    std::vector<std::string> noted;

    Processes& processes() { return scripted; }
    std::filesystem::path programThatExits(int status)
    {
        const auto path = "/bin/exit" + std::to_string(status);
        scripted.install(path, [status](const auto&) { return status; });
        return path;
    }
    std::filesystem::path programThatNotesItsArguments()
    {
        scripted.install("/bin/note", [this](const auto& arguments) {
            noted = arguments;
            return 0;
        });
        return "/bin/note";
    }
    std::vector<std::string> notedArguments() { return noted; }
};

struct HandFedKeyTapBackend {
    HandFedKeyTap handFed;
    JournalKeyPoster poster;

    KeyTap& tap() { return handFed; }
    void press(KeyCode code, EventFlags flags) { handFed.press(code, flags); }
    void holdUntilItRepeats(KeyCode code, EventFlags flags) { handFed.press(code, flags); }
    void postOurselves(KeyCode code, EventFlags flags)
    {
        poster.post(code, KeyDirection::down, flags);
        poster.post(code, KeyDirection::up, flags);
    }
    void click() { handFed.click(); }
    void turnWheel() { }
    void settle() { }
};

struct JournalKeyPosterBackend {
    JournalKeyPoster journal;

    KeyPoster& poster() { return journal; }
    std::vector<KeyPress> seen()
    {
        std::vector<KeyPress> presses;
        for (const auto& posted : journal.journal)
            if (posted.direction == KeyDirection::down)
                presses.push_back({posted.keyCode, posted.flags});
        return presses;
    }
    bool anythingIsDown()
    {
        const auto isDown = [](const auto& posted) {
            return posted.direction == KeyDirection::down;
        };
        const auto downs = std::ranges::count_if(journal.journal, isDown);
        return 2 * downs > std::ssize(journal.journal);
    }
};

struct MemoryPasteboardBackend {
    MemoryPasteboard memory;

    MemoryPasteboardBackend()
    {
        memory.desktopKeepsTexts = false;
        memory.holdsPastes = true;
    }
    Pasteboard& pasteboard() { return memory; }
    std::vector<std::filesystem::path> pastedFiles() { return memory.files; }
    std::string pastedText() { return memory.text; }
    void copyFilesElsewhere(const std::vector<std::filesystem::path>& files)
    {
        memory.copyElsewhere(files);
    }
    void copyTextElsewhere(const std::string& text) { memory.copyTextElsewhere(text); }
    void askForFiles() { memory.askForFiles(); }
    std::optional<std::vector<std::filesystem::path>> given() { return memory.given; }
    bool runUntil(const std::function<bool()>& condition) { return condition(); }
    void settle() { }
    void letTimePass() { memory.endPatience(); }
    void startKeeper() { memory.desktopKeepsTexts = true; }
    std::string keptText() { return memory.keptText; }
};

struct RecordingGraphicsBackend {
    RecordingOffscreenGraphics recording;

    const OffscreenGraphics& graphics() { return recording; }
};

struct TextMeasurerBackend {
    HeadlessTextMeasurer textMeasurer;

    const TextMeasurer& measurer() { return textMeasurer; }
};

struct MemoryDefaultsBackend {
    MemoryUserDefaultsStore memory;

    UserDefaultsStore& store() { return memory; }
};

} // namespace

} // namespace tallowbay::headless

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, DispatchContract, headless::VirtualDispatchBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, FileSystemContract, headless::MemoryFileBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ImageCodecContract, headless::PlainImageCodec);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, HotkeysContract, headless::HandFedHotkeysBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, KeyPosterContract, headless::JournalKeyPosterBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, KeyTapContract, headless::HandFedKeyTapBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(
    Headless, OffscreenGraphicsContract, headless::RecordingGraphicsBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, PasteboardContract, headless::MemoryPasteboardBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, FileEventsContract, headless::MemoryEventsBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, FolderEventsContract, headless::MemoryEventsBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, ProcessesContract, headless::ScriptedProcessesBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, TextMeasurerContract, headless::TextMeasurerBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, UserDefaultsContract, headless::MemoryDefaultsBackend);
} // namespace tallowbay::contract
