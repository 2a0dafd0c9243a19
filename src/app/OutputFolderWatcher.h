#pragma once

#include "base/Lifetime.h"
#include "base/Subscription.h"
#include "platform/Platform.h"

#include <vector>

namespace tallowbay {

class EditorSlot;
class ScreenshotBatch;

// Watches the folder of compressed copies, so that a copy that someone deletes leaves the batch and
// the editor's strip: at once, or in a burst of changes within a quarter of a second. Thread: main
// queue.
class OutputFolderWatcher {
public:
    OutputFolderWatcher(const Platform&, ScreenshotBatch&, const EditorSlot&);

    // Creates the folder if need be. If it cannot be watched, deletions go unnoticed.
    void startDirectoryWatcher();
    void stop();

private:
    void folderChanged();
    void rest();
    void forgetDeletedFiles();

    const Platform platform;
    ScreenshotBatch& batch;
    const EditorSlot& editor;
    std::vector<Subscription> dirWatchSources;
    bool resting = false;
    bool changedMeanwhile = false;
    Lifetime lifetime;
};

} // namespace tallowbay
