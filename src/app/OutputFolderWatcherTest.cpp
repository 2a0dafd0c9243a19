#include "app/OutputFolderWatcher.h"

#include "app/ScreenshotBatch.h"
#include "app/TestEditorStrip.h"
#include "editor/EditorSlot.h"
#include "platform/headless/Desktop.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using Paths = std::vector<std::filesystem::path>;
using headless::optimized;

class OutputFolderWatcherTest : public testing::Test {
protected:
    OutputFolderWatcherTest()
    {
        for (const char* name : {"a.png", "b.png", "c.png"}) {
            desktop.files.create(optimized / name);
            batch.addToClipboard(optimized / name);
        }
        desktop.console.lines.clear();
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    TestEditorStrip editor;
    EditorSlot slot; // empty until the editor is opened
    ToastPresenter toastPresenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), toastPresenter};
    ScreenshotBatch batch{desktop.platform(), toasts, slot, [] {}};
    OutputFolderWatcher watcher{desktop.platform(), batch, slot};
};

TEST_F(OutputFolderWatcherTest, CreatesTheFolder)
{
    desktop.files.remove("/home/u/Downloads/Tallowbay");
    watcher.startDirectoryWatcher();
    EXPECT_TRUE(desktop.files.isDirectory(optimized));
}

TEST_F(OutputFolderWatcherTest, DropsADeletedCopyFromTheBatchAndKeepsTheOrderOfTheRest)
{
    watcher.startDirectoryWatcher();
    desktop.files.remove(optimized / "b.png");
    desktop.dispatch.runMain();
    EXPECT_EQ(batch.urls(), (Paths{optimized / "a.png", optimized / "c.png"}));
}

TEST_F(OutputFolderWatcherTest, LeavesThePasteboardAlone)
{
    watcher.startDirectoryWatcher();
    desktop.files.remove(optimized / "b.png");
    desktop.dispatch.runMain();
    EXPECT_EQ(desktop.pasteboard.files.size(), 3u);
}

TEST_F(OutputFolderWatcherTest, DropsEverythingWithTheFolder)
{
    watcher.startDirectoryWatcher();
    desktop.files.remove(optimized);
    desktop.dispatch.runMain();
    EXPECT_TRUE(batch.urls().empty());
}

TEST_F(OutputFolderWatcherTest, TellsTheEditorFirst)
{
    slot.fill(editor);
    std::size_t inBatch = 0;
    editor.onRemoveDeletedFiles = [&] { inBatch = batch.urls().size(); };
    watcher.startDirectoryWatcher();
    desktop.files.remove(optimized / "b.png");
    desktop.dispatch.runMain();
    EXPECT_EQ(inBatch, 3u);
    EXPECT_EQ(batch.urls().size(), 2u);
}

TEST_F(OutputFolderWatcherTest, SilentlyDoesWithoutAFolderThatCannotBeWatched)
{
    desktop.files.remove("/home/u/Downloads/Tallowbay");
    desktop.files.makeReadOnly("/home/u/Downloads");
    watcher.startDirectoryWatcher();
    EXPECT_EQ(desktop.folderEvents.runningCount(), 0u);
    EXPECT_TRUE(desktop.console.lines.empty());
}

TEST_F(OutputFolderWatcherTest, HearsNothingOnceStopped)
{
    watcher.startDirectoryWatcher();
    watcher.stop();
    EXPECT_EQ(desktop.folderEvents.runningCount(), 0u);
    desktop.files.remove(optimized / "b.png");
    desktop.dispatch.runMain();
    EXPECT_EQ(batch.urls().size(), 3u);
}

// A batch of two thousand was looked through two thousand times while it grew.
TEST_F(OutputFolderWatcherTest, LooksSeldomWhileCopiesComeAndMissesNothing)
{
    slot.fill(editor);
    int looks = 0;
    editor.onRemoveDeletedFiles = [&] { ++looks; };
    watcher.startDirectoryWatcher();
    for (int i = 0; i < 100; ++i) {
        desktop.files.create(optimized / (std::to_string(i) + ".png"));
        desktop.dispatch.advance(10ms);
    }
    EXPECT_EQ(looks, 5);
    desktop.files.remove(optimized / "b.png");
    desktop.dispatch.advance(250ms);
    EXPECT_EQ(batch.urls().size(), 2u);
    desktop.dispatch.advance(1s);
    EXPECT_EQ(looks, 6);
}

TEST_F(OutputFolderWatcherTest, LooksNoMoreOnceStopped)
{
    watcher.startDirectoryWatcher();
    desktop.files.remove(optimized / "a.png");
    desktop.dispatch.runMain();
    desktop.files.remove(optimized / "b.png");
    desktop.dispatch.runMain();
    watcher.stop();
    desktop.dispatch.advance(1s);
    EXPECT_EQ(batch.urls().size(), 2u);
}

} // namespace
} // namespace tallowbay
