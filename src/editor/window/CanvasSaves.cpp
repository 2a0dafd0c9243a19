#include "editor/window/CanvasSaves.h"

#include "platform/ImageCodec.h"

#include <algorithm>
#include <utility>

namespace tallowbay {

namespace {

EditedScreenshot edits(const ScreenshotRecord& record, const Image& picture)
{
    return {record.url, record.annotations, picture, record.canvasSize};
}

} // namespace

CanvasSaves::CanvasSaves(
    Dispatch& dispatch, const FileSystem& fileSystem, const ImageCodec& codec,
    AnnotationSaver& saver)
    : fileSystem(fileSystem)
    , codec(codec)
    , saver(saver)
    , pictures(dispatch, fileSystem, codec)
{
}

void CanvasSaves::show(const ScreenshotRecord& record, PictureLoader::Answer answer)
{
    newest.reset(); // it holds a picture, and none that comes will be the same
    pictures.load(record.url, std::move(answer));
}

void CanvasSaves::showNothing()
{
    newest.reset();
    pictures.forget();
}

void CanvasSaves::edited(const ScreenshotRecord& record, const Image& picture)
{
    if (record.annotations.empty() || (!picture && !isLoading()))
        return;
    overtake(record.url);
    if (picture)
        save(edits(record, picture));
    else
        owed = edits(record, nullptr);
}

void CanvasSaves::pictureCame(const Image& picture)
{
    if (owed)
        saveOwed(*std::exchange(owed, std::nullopt), picture);
}

void CanvasSaves::leave(const ScreenshotRecord& record, const Image& picture)
{
    if (picture)
        edited(record, picture);
    else if (owed)
        saveBeside(*std::exchange(owed, std::nullopt));
}

void CanvasSaves::saveBeside(EditedScreenshot edited)
{
    const std::uint64_t number = ++lastBeside;
    pictures.loadBeside(edited.url, [this, number](const Image& picture) {
        const auto found = beside.extract(number);
        if (found)
            saveOwed(std::move(found.mapped()), picture);
    });
    beside.emplace(number, std::move(edited));
}

void CanvasSaves::saveOwed(EditedScreenshot edited, const Image& picture)
{
    edited.picture = picture;
    if (picture)
        save(std::move(edited));
    else
        tell(edited.url, false);
}

// Pictures may come in another order than they were asked for.
void CanvasSaves::overtake(const std::filesystem::path& url)
{
    std::erase_if(beside, [&](const auto& each) { return each.second.url == url; });
}

void CanvasSaves::save(EditedScreenshot edited)
{
    if (newest == edited)
        return;
    newest = edited;
    saver.save(std::move(edited));
}

void CanvasSaves::fileWritten(const std::filesystem::path& url, bool succeeded)
{
    if (!succeeded && newest && newest->url == url)
        newest.reset();
}

std::set<std::filesystem::path> CanvasSaves::abandon(const std::set<std::filesystem::path>& urls)
{
    std::set<std::filesystem::path> abandoned;
    const auto isAbandoned = [&](const EditedScreenshot& edited) {
        if (!urls.contains(edited.url))
            return false;
        abandoned.insert(edited.url);
        return true;
    };
    if (owed && isAbandoned(*owed))
        owed.reset();
    std::erase_if(beside, [&](const auto& each) { return isAbandoned(each.second); });
    return abandoned;
}

bool CanvasSaves::isBeingWritten(const std::filesystem::path& url) const
{
    return (owed && owed->url == url)
        || std::ranges::any_of(beside, [&](const auto& each) { return each.second.url == url; })
        || saver.pathsBeingWritten().contains(url);
}

void CanvasSaves::finishWriting(std::chrono::milliseconds limit)
{
    if (owed)
        saveBeside(*std::exchange(owed, std::nullopt));
    for (auto& [number, edited] : std::exchange(beside, {})) {
        auto read = loadImage(fileSystem, codec, edited.url);
        if (auto* bitmap = std::get_if<Bitmap>(&read))
            edited.picture = std::make_shared<Bitmap>(std::move(*bitmap));
        saver.save(std::move(edited));
    }
    saver.finishWriting(limit);
}

void CanvasSaves::tell(const std::filesystem::path& url, bool succeeded) const
{
    const auto ended = onWriteEnded;
    if (ended)
        ended(url, succeeded);
}

} // namespace tallowbay
