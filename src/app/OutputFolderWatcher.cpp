#include "app/OutputFolderWatcher.h"

#include "app/ScreenshotBatch.h"
#include "capture/ProductFolder.h"
#include "editor/EditorSlot.h"
#include "editor/EditorStrip.h"
#include "platform/Dispatch.h"
#include "platform/FileSystem.h"
#include "platform/FolderEvents.h"

#include <utility>

namespace tallowbay {

using namespace std::chrono_literals;

namespace {

// Every copy that is made is a change, too, and with each all others are looked for.
constexpr auto restBetweenLooks = 250ms;

} // namespace

OutputFolderWatcher::OutputFolderWatcher(
    const Platform& platform, ScreenshotBatch& batch, const EditorSlot& editor)
    : platform(platform)
    , batch(batch)
    , editor(editor)
{
}

void OutputFolderWatcher::startDirectoryWatcher()
{
    const auto folder = optimizedFolder(platform.fileSystem);
    platform.fileSystem.createFolders(folder);
    if (auto source = platform.folderEvents.start(folder, [this] { folderChanged(); }))
        dirWatchSources.push_back(std::move(*source));
}

void OutputFolderWatcher::stop()
{
    dirWatchSources.clear();
    changedMeanwhile = false;
}

void OutputFolderWatcher::folderChanged()
{
    if (resting) {
        changedMeanwhile = true;
        return;
    }
    rest();
    forgetDeletedFiles();
}

void OutputFolderWatcher::rest()
{
    resting = true;
    platform.dispatch.mainAfter(restBetweenLooks, lifetime.guard([this] {
        resting = false;
        if (std::exchange(changedMeanwhile, false))
            folderChanged();
    }));
}

void OutputFolderWatcher::forgetDeletedFiles()
{
    if (EditorStrip* strip = editor.strip())
        strip->removeDeletedFiles();
    batch.forgetMissingFiles();
}

} // namespace tallowbay
