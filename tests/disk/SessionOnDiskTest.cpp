// The session on a real disk: saves that are cut short, and files that nobody sane has written.

#include "editor/saving/AnnotationSaver.h"
#include "editor/strip/SessionStore.h"
#include "editor/window/AnnotationWindow.h"
#include "platform/headless/Desktop.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <random>
#include <thread>

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using Items = std::vector<SessionStore::Item>;

class SessionOnDiskTest : public testing::Test {
protected:
    static posix::PosixFileSystem filesAt(const fs::path& home)
    {
        setenv("HOME", home.c_str(), 1);
        return {};
    }
    fs::path sessionFile() { return SessionStore::file(files); }
    void save(const Items& items) { SessionStore::save(files, console, items); }
    void write(const std::string& text)
    {
        fs::create_directories(sessionFile().parent_path());
        std::ofstream(sessionFile()) << text;
    }

    test::TemporaryFolder home;
    posix::PosixFileSystem files = filesAt(home.path);
    headless::RecordingConsole console;
};

// Saves that are cut short

class KilledSaveTest : public SessionOnDiskTest {
protected:
    static Items many(const std::string& name, bool checked)
    {
        Items items;
        for (int i = 0; i < 30; ++i)
            items.push_back({"/somewhere/" + name + std::to_string(i) + ".png", checked});
        return items;
    }

    // Saves both states in turn, without end, and counts the saves where this process sees it.
    [[noreturn]] void saveForEver()
    {
        for (;;) {
            save(saves % 2 == 0 ? other : one);
            ++saves;
        }
    }

    // Another process saves, and is killed at any moment.
    void saveAndKill(std::chrono::microseconds after)
    {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            saveForEver();
        std::this_thread::sleep_for(after);
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it was to be killed while it saves";
    }

    const Items one = many("a", true);
    const Items other = many("another much longer name ", false);
    std::atomic<int>& saves = *new (mmap(
        nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
        0)) std::atomic<int>(0);
};

TEST_F(KilledSaveTest, LeavesOneOfTheTwoStatesWheneverTheProcessIsKilled)
{
    save(one);
    std::minstd_rand random(1);
    int kills = 0;
    int others = 0;
    const int wanted = test::isSanitized ? 100 : 1000;
    for (; (saves < wanted || kills < wanted / 5) && !HasFailure(); ++kills) {
        saveAndKill(std::chrono::microseconds(random() % 20'000));
        const auto loaded = SessionStore::load(files);
        ASSERT_TRUE(loaded) << "after " << saves << " saves";
        ASSERT_TRUE(*loaded == one || *loaded == other) << "after " << saves << " saves";
        others += *loaded == other;
    }
    EXPECT_GT(others, kills / 10);
    EXPECT_LT(others, kills - kills / 10);
}

TEST_F(KilledSaveTest, SavesAgainAfterwards)
{
    saveAndKill(5ms);
    save({{"/somewhere/new.png", true}});
    EXPECT_THAT(SessionStore::load(files), testing::Optional(Items{{"/somewhere/new.png", true}}));
    EXPECT_TRUE(console.lines.empty());
}

TEST_F(KilledSaveTest, WhatItLeavesBesideTheFileGoesWithTheNextProgram)
{
    const auto entries = [this] {
        return std::distance(fs::directory_iterator(sessionFile().parent_path()), {});
    };
    save(one);
    std::minstd_rand random(1);
    for (int kills = 0; entries() < 2 && kills < 1000; ++kills)
        saveAndKill(std::chrono::microseconds(random() % 5000));
    ASSERT_EQ(entries(), 2) << "a draft is left";
    posix::PosixFileSystem next;
    SessionStore::save(next, console, one);
    EXPECT_EQ(entries(), 1);
}

// Files that nobody sane has written

class HostileSessionTest : public SessionOnDiskTest {
protected:
    // The window with that session, all of whose background work has ended.
    void open()
    {
        const auto begin = std::chrono::steady_clock::now();
        window = std::make_unique<AnnotationWindow>(
            desktop.platformWith(files, desktop.pasteboard), views, saver, toasts);
        desktop.dispatch.runUntilIdle();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    }
    std::vector<std::string> shown() const
    {
        std::vector<std::string> names;
        for (std::size_t index = 0; index < window->count(); ++index)
            names.push_back(window->url(index).filename());
        return names;
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    ToastPresenter presenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), presenter};
    AnnotationSaver saver{
        desktop.dispatch,
        AnnotationExporter(
            files, desktop.imageCodec, desktop.offscreenGraphics,
            ImageCompressor(files, desktop.processes, desktop.resources, desktop.tools))};
    std::unique_ptr<AnnotationWindow> window;
};

TEST_F(HostileSessionTest, ShowsNoPictureOfWhatIsNoFileAndWaitsForNothing)
{
    const fs::path fifo = home.path / "fifo.png";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const fs::path folder = home.path / "folder.png";
    fs::create_directory(folder);
    save({{fifo, true}, {folder, true}, {"/dev/zero", true}, {"/dev/tty", true}});
    open();
    EXPECT_THAT(shown(), testing::Contains("fifo.png"));
    for (std::size_t index = 0; index < window->count(); ++index) {
        window->cellClicked(index);
        desktop.dispatch.runUntilIdle();
        EXPECT_FALSE(window->canvas().backgroundImage());
        EXPECT_FALSE(window->cell(index).thumbnail);
    }
    window->removeDeletedFiles();
}

TEST_F(HostileSessionTest, RestoresThousandsOfScreenshots)
{
    const fs::path picture = home.path / "picture.png";
    std::ofstream(picture) << "no picture";
    Items items;
    for (int i = 0; i < 10'000; ++i)
        items.push_back(i % 10 == 9 ? SessionStore::Item{} : SessionStore::Item{picture, true});
    save(items);
    open();
    EXPECT_EQ(window->count(), 9'000u);
    window->handleKeyDown({keyCode::right, 0});
    window->checkboxToggled(0);
    window->removeExpiredURLs({picture});
    EXPECT_EQ(window->count(), 0u);
}

TEST_F(HostileSessionTest, RestoresNothingOfAFileThatIsTooLarge)
{
    write(R"({"items": []})");
    fs::resize_file(sessionFile(), 1ull << 40); // takes no room on the disk
    open();
    EXPECT_EQ(window->count(), 0u);
    EXPECT_TRUE(fs::exists(sessionFile()));
}

TEST_F(HostileSessionTest, RestoresNothingOfAFileThatIsNestedDeeply)
{
    write(R"({"items": )" + std::string(1 << 20, '['));
    open();
    write(R"({"items": )" + std::string(500'000, '[') + std::string(500'000, ']') + "}");
    open();
    EXPECT_EQ(window->count(), 0u);
}

TEST_F(HostileSessionTest, RestoresNothingWhereTheSessionIsNoFile)
{
    fs::create_directories(sessionFile().parent_path());
    ASSERT_EQ(mkfifo(sessionFile().c_str(), 0600), 0);
    open();
    EXPECT_EQ(window->count(), 0u);
    fs::remove(sessionFile());
    fs::create_directory(sessionFile());
    open();
    EXPECT_EQ(window->count(), 0u);
}

TEST_F(HostileSessionTest, RestoresNothingOfWrongTypes)
{
    for (const char* text :
         {R"({"items": {}})", R"({"items": [1]})", R"({"items": [{"type": 1}]})",
          R"({"items": [{"type": "image", "url": ["/dev/null"]}]})",
          R"({"items": [{"type": "image", "url": "/dev/null", "checked": "yes"}]})", "[]", "null",
          "", "\xff\xfe"}) {
        write(text);
        open();
        EXPECT_EQ(window->count(), 0u) << text;
    }
}

} // namespace
} // namespace tallowbay
