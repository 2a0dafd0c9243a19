#pragma once

#include "base/Subscription.h"
#include "platform/Platform.h"

#include <functional>
#include <vector>

namespace tallowbay {

class EditorStrip;
class ScreenshotBatch;

// Watches the folder of compressed copies, so that a copy that someone deletes leaves the batch and
// the editor's strip. Thread: main queue.
class OutputFolderWatcher {
public:
    // The editor may be absent (null) until it is opened for the first time.
    OutputFolderWatcher(
        const Platform&, ScreenshotBatch&, std::function<EditorStrip*()> annotationWindow);

    // Creates the folder if need be. If it cannot be watched, deletions go unnoticed.
    void startDirectoryWatcher();
    void stop() { dirWatchSources.clear(); }

private:
    void forgetDeletedFiles();

    const Platform platform;
    ScreenshotBatch& batch;
    std::function<EditorStrip*()> annotationWindow;
    std::vector<Subscription> dirWatchSources;
};

} // namespace tallowbay
