#include "editor/window/ThumbnailLoader.h"

#include "editor/strip/ThumbnailStrip.h"
#include "platform/Dispatch.h"
#include "platform/ImageCodec.h"

#include <algorithm>
#include <utility>

namespace tallowbay {

namespace {

// Few, so that what comes into view meanwhile has not long to wait.
constexpr int runningAtMost = 2;

} // namespace

ThumbnailLoader::ThumbnailLoader(
    Dispatch& dispatch, const FileSystem& fileSystem, const ImageCodec& codec)
    : dispatch(dispatch)
    , fileSystem(fileSystem)
    , codec(codec)
{
}

ThumbnailLoader::~ThumbnailLoader()
{
    *ended = true;
}

Image ThumbnailLoader::thumbnail(std::uint64_t id) const
{
    const auto entry = entries.find(id);
    return entry == entries.end() ? nullptr : entry->second.image;
}

void ThumbnailLoader::setBox(PixelSize wanted)
{
    if (wanted == std::exchange(box, wanted))
        return;
    for (auto& [id, entry] : entries) {
        entry.settled = false;
        entry.job = 0;
    }
    startJobs();
}

void ThumbnailLoader::want(std::vector<Wanted> nearestFirst)
{
    order = std::move(nearestFirst);
    if (order.size() > keptAtMost)
        order.resize(keptAtMost);
    std::map<std::uint64_t, Entry> kept;
    for (const Wanted& wanted : order) {
        auto known = entries.extract(wanted.id);
        if (known)
            kept.insert(std::move(known));
        else
            kept[wanted.id].url = wanted.url;
    }
    entries = std::move(kept);
    startJobs();
}

void ThumbnailLoader::fileChanged(const std::filesystem::path& url)
{
    for (auto& [id, entry] : entries) {
        if (entry.url == url) {
            entry.settled = false;
            entry.job = 0;
        }
    }
    startJobs();
}

void ThumbnailLoader::setPaused(bool wanted)
{
    paused = wanted;
    startJobs();
}

void ThumbnailLoader::startJobs()
{
    for (const Wanted& wanted : order) {
        if (paused || running >= runningAtMost)
            return;
        Entry& entry = entries.at(wanted.id);
        if (!entry.settled && entry.job == 0)
            start(wanted, entry);
    }
}

void ThumbnailLoader::start(const Wanted& wanted, Entry& entry)
{
    entry.job = ++lastJob;
    ++running;
    auto finished = lifetime.guard([this, id = wanted.id, job = entry.job](Image image) {
        finish(id, job, std::move(image));
    });
    dispatch.globalAsync(
        QualityOfService::userInitiated,
        [&queue = dispatch, &files = fileSystem, &images = codec, url = wanted.url, box = box,
         ended = ended, finished] {
            if (*ended)
                return;
            auto read = loadThumbnail(files, images, url, box);
            Image image;
            if (auto* bitmap = std::get_if<Bitmap>(&read))
                image = std::make_shared<Bitmap>(std::move(*bitmap));
            queue.mainAsync([finished, image]() mutable { finished(std::move(image)); });
        });
}

void ThumbnailLoader::finish(std::uint64_t id, std::uint64_t job, Image image)
{
    --running;
    const auto entry = entries.find(id);
    const bool isAwaited = entry != entries.end() && entry->second.job == job;
    if (isAwaited) {
        entry->second.job = 0;
        entry->second.settled = true;
    }
    const bool came = isAwaited && image;
    if (came)
        entry->second.image = std::move(image);
    startJobs();
    if (came && onLoaded)
        onLoaded(id);
}

std::vector<ThumbnailLoader::Wanted> nearestFirst(
    const ThumbnailStrip& strip, std::size_t firstVisible, std::size_t lastVisible)
{
    const auto distance = [&](std::size_t slot) {
        if (slot < firstVisible)
            return firstVisible - slot;
        return slot > lastVisible ? slot - lastVisible : 0;
    };
    std::vector<std::pair<std::size_t, std::size_t>> byDistance; // with their index
    for (std::size_t slot = 0; slot < strip.slots().size(); ++slot) {
        if (const auto index = strip.slots()[slot])
            byDistance.emplace_back(distance(slot), *index);
    }
    std::ranges::stable_sort(byDistance, {}, [](const auto& each) { return each.first; });
    std::vector<ThumbnailLoader::Wanted> wanted;
    for (const auto& [ignored, index] : byDistance)
        wanted.push_back({strip.at(index).id, strip.at(index).url});
    return wanted;
}

} // namespace tallowbay
