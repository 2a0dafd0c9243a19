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
    pictures.load(record.url, std::move(answer));
}

void CanvasSaves::showNothing()
{
    pictures.forget();
}

void CanvasSaves::edited(const ScreenshotRecord& record, const Image& picture)
{
    if (picture) {
        saver.save(edits(record, picture));
        return;
    }
    const bool wasOwed = std::exchange(owed, std::nullopt).has_value();
    if (isLoading() && !record.annotations.empty())
        owed = edits(record, nullptr);
    else if (wasOwed)
        tell(record.url, true); // nothing is left to be written
}

void CanvasSaves::pictureCame(const ScreenshotRecord& record, const Image& picture)
{
    if (!std::exchange(owed, std::nullopt))
        return;
    if (picture)
        saver.save(edits(record, picture));
    else
        tell(record.url, false);
}

void CanvasSaves::leave(const ScreenshotRecord& record, const Image& picture)
{
    if (picture)
        saver.save(edits(record, picture));
    else if (owed)
        saveBeside(*std::exchange(owed, std::nullopt));
}

void CanvasSaves::saveBeside(EditedScreenshot edited)
{
    const auto place = beside.insert(beside.end(), std::move(edited));
    pictures.loadBeside(place->url, [this, place](Image picture) {
        EditedScreenshot ready = std::move(*place);
        beside.erase(place);
        const std::filesystem::path url = ready.url;
        ready.picture = std::move(picture);
        const bool isKnown = ready.picture != nullptr;
        saver.save(std::move(ready));
        if (!isKnown)
            tell(url, false);
    });
}

bool CanvasSaves::abandon()
{
    return std::exchange(owed, std::nullopt).has_value();
}

bool CanvasSaves::isBeingWritten(const std::filesystem::path& url) const
{
    const auto isOf = [&](const EditedScreenshot& edited) { return edited.url == url; };
    return (owed && isOf(*owed)) || std::ranges::any_of(beside, isOf)
        || saver.pathsBeingWritten().contains(url);
}

void CanvasSaves::finishWriting(std::chrono::milliseconds limit)
{
    std::vector<EditedScreenshot> pictureless(beside.begin(), beside.end());
    if (owed)
        pictureless.push_back(*owed);
    for (EditedScreenshot& edited : pictureless) {
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
