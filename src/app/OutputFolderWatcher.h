#pragma once

#include "base/Subscription.h"
#include "platform/Platform.h"

#include <vector>

namespace tallowbay {

class EditorSlot;
class ScreenshotBatch;

// Watches the folder of compressed copies, so that a copy that someone deletes leaves the batch and
// the editor's strip. Thread: main queue.
class OutputFolderWatcher {
public:
    OutputFolderWatcher(const Platform&, ScreenshotBatch&, const EditorSlot&);

    // Creates the folder if need be. If it cannot be watched, deletions go unnoticed.
    void startDirectoryWatcher();
    void stop() { dirWatchSources.clear(); }

private:
    void forgetDeletedFiles();

    const Platform platform;
    ScreenshotBatch& batch;
    const EditorSlot& editor;
    std::vector<Subscription> dirWatchSources;
};

} // namespace tallowbay
