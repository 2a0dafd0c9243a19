#include "app/ScreenshotWatcher.h"

#include "capture/ProductFolder.h"
#include "platform/DesktopSettings.h"
#include "platform/FileSystem.h"

namespace tallowbay {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

ScreenshotWatcher::ScreenshotWatcher(const Platform& platform, const ScreenshotLocation& location)
    : fileEvents(platform.fileEvents)
    , dispatch(platform.dispatch)
    , fileSystem(platform.fileSystem)
    , desktop(platform.desktop)
    , location(location)
    , seenQueue(dispatch.makeSerialQueue("com.quarnel.tallowbay.seen"))
{
}

void ScreenshotWatcher::start()
{
    streamRef = fileEvents.start(
        {location.systemScreenshotDirectory()},
        {[this](const std::vector<fs::path>& paths) { handleEvents(paths); }});
}

void ScreenshotWatcher::handleEvents(const std::vector<fs::path>& paths)
{
    for (const fs::path& path : paths) {
        if (isScreenshot(path))
            seenQueue->async([this, path] { reportOnce(path); });
    }
}

void ScreenshotWatcher::reportOnce(const fs::path& path)
{
    if (!recentlySeen.insert(path.native()).second)
        return;
    forgetLater(path);
    dispatch.mainAsync(lifetime.guard([this, path] {
        if (onScreenshotDetected)
            onScreenshotDetected(path);
    }));
}

void ScreenshotWatcher::forgetLater(const fs::path& path)
{
    dispatch.mainAfter(3s, lifetime.guard([this, path] {
        seenQueue->async([this, path] { recentlySeen.erase(path.native()); });
    }));
}

bool ScreenshotWatcher::isScreenshot(const fs::path& path) const
{
    if (!fileSystem.exists(path) || fileSystem.isDirectory(path))
        return false;
    const fs::path folder = path.parent_path();
    if (folder.filename() == "optimized" || folder.filename() == "original")
        return false;
    return !isWithin(folder, ssOptimizeDir(fileSystem)) && hasScreenshotExtension(path)
        && hasScreenshotName(path, desktop.screenshotNamePrefixes);
}

} // namespace tallowbay
