#include "app/OutputFolderWatcher.h"

#include "app/ScreenshotBatch.h"
#include "capture/ProductFolder.h"
#include "editor/EditorSlot.h"
#include "editor/EditorStrip.h"
#include "platform/FileSystem.h"
#include "platform/FolderEvents.h"

namespace tallowbay {

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
    if (auto source = platform.folderEvents.start(folder, [this] { forgetDeletedFiles(); }))
        dirWatchSources.push_back(std::move(*source));
}

void OutputFolderWatcher::forgetDeletedFiles()
{
    if (EditorStrip* strip = editor.strip())
        strip->removeDeletedFiles();
    batch.forgetMissingFiles();
}

} // namespace tallowbay
