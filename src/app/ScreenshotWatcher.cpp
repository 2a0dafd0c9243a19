#include "app/ScreenshotWatcher.h"

#include "base/Paths.h"
#include "capture/ProductFolder.h"
#include "platform/Console.h"
#include "platform/FileSystem.h"
#include "platform/UserDefaultsStore.h"

#include <algorithm>

namespace tallowbay {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

// A tool tells its folder with its first picture there, or soon after.
constexpr auto recent = 10s;

std::string coverageText(const std::string& folder, FileEvents::Coverage coverage)
{
    switch (coverage) {
    case FileEvents::Coverage::nearestFolders:
        return "Too many folders in " + folder
            + ": screenshots in the deepest of them go unnoticed";
    case FileEvents::Coverage::nothing:
        return "No watch is left for " + folder + ": screenshots there go unnoticed";
    case FileEvents::Coverage::whole:
        break;
    }
    return "All of " + folder + " is watched again";
}

} // namespace

ScreenshotWatcher::ScreenshotWatcher(const Platform& platform, const ScreenshotLocation& location)
    : fileEvents(platform.fileEvents)
    , dispatch(platform.dispatch)
    , clock(platform.clock)
    , console(platform.console)
    , fileSystem(platform.fileSystem)
    , location(location)
    , names(platform.desktop.screenshotNamePatterns, platform.defaults.standard(), platform.console)
    , seenQueue(dispatch.makeSerialQueue("com.quarnel.tallowbay.seen"))
{
}

void ScreenshotWatcher::start()
{
    names.refresh();
    streams.clear();
    watch(location.places(), 0s);
}

void ScreenshotWatcher::followPlaces()
{
    names.refresh();
    auto places = location.places();
    const bool someStay = std::ranges::any_of(streams, [&](const auto& stream) {
        return std::ranges::find(places, stream->place) != places.end();
    });
    watch(std::move(places), someStay ? recent : 0s);
}

void ScreenshotWatcher::refresh()
{
    names.refresh();
    for (auto& stream : streams) {
        if (stream->isIdle)
            stream = startStream(stream->place, recent);
    }
}

void ScreenshotWatcher::watch(std::vector<ScreenshotPlace> places, std::chrono::seconds lookBack)
{
    Streams wanted;
    for (const ScreenshotPlace& place : places) {
        auto stream = takeStream(place);
        wanted.push_back(stream ? std::move(stream) : startStream(place, lookBack));
    }
    streams = std::move(wanted);
}

// The reason alone is none to watch a folder anew.
std::unique_ptr<ScreenshotWatcher::Stream> ScreenshotWatcher::takeStream(
    const ScreenshotPlace& place)
{
    for (auto& stream : streams) {
        if (stream && stream->place.folder == place.folder
            && stream->place.withSubfolders == place.withSubfolders) {
            stream->place.reason = place.reason;
            return std::move(stream);
        }
    }
    return nullptr;
}

std::unique_ptr<ScreenshotWatcher::Stream> ScreenshotWatcher::startStream(
    const ScreenshotPlace& place, std::chrono::seconds lookBack)
{
    auto stream = std::make_unique<Stream>();
    stream->place = place;
    const auto depth =
        place.withSubfolders ? FileEvents::Depth::withSubfolders : FileEvents::Depth::folderAlone;
    stream->token = fileEvents.start(
        {place.folder, depth, lookBack, 500ms},
        {[this](const std::vector<fs::path>& paths) { handleEvents(paths); },
         [this, &stream = *stream](auto coverage) { tellCoverage(stream, coverage); }});
    stream->isIdle = !stream->token;
    return stream;
}

void ScreenshotWatcher::tellCoverage(Stream& stream, FileEvents::Coverage coverage)
{
    stream.coverage = coverage;
    console.line(coverageText(stream.place.folder.native(), coverage));
}

std::vector<ScreenshotWatcher::WatchedPlace> ScreenshotWatcher::watchedPlaces() const
{
    std::vector<WatchedPlace> places;
    for (const auto& stream : streams)
        places.push_back(*stream);
    return places;
}

void ScreenshotWatcher::handleEvents(const std::vector<fs::path>& paths)
{
    names.refresh();
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
    dispatch.mainAsync(lifetime.guard([this, path] { report(path); }));
}

void ScreenshotWatcher::report(const fs::path& path)
{
    noticed = Noticed{path, clock.wallNow()};
    if (onScreenshotDetected)
        onScreenshotDetected(path);
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
        && names.match(path);
}

} // namespace tallowbay
