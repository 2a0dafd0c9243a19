#include "editor/window/PictureLoader.h"

#include "platform/Dispatch.h"
#include "platform/ImageCodec.h"

#include <utility>

namespace tallowbay {

PictureLoader::PictureLoader(
    Dispatch& dispatch, const FileSystem& fileSystem, const ImageCodec& codec)
    : dispatch(dispatch)
    , fileSystem(fileSystem)
    , codec(codec)
{
}

PictureLoader::~PictureLoader()
{
    forget();
    *ended = true;
}

void PictureLoader::load(const std::filesystem::path& url, Answer answer)
{
    forget();
    current = std::make_shared<std::atomic<bool>>(false);
    loading = true;
    read(url, current, [this, answer = std::move(answer)](Image image) {
        loading = false;
        answer(std::move(image));
    });
}

void PictureLoader::forget()
{
    if (current)
        *current = true;
    loading = false;
}

void PictureLoader::loadBeside(const std::filesystem::path& url, Answer answer)
{
    read(url, ended, std::move(answer));
}

void PictureLoader::read(
    const std::filesystem::path& url, std::shared_ptr<const std::atomic<bool>> dropped,
    Answer answer)
{
    auto deliver = lifetime.guard([dropped, answer = std::move(answer)](Image image) {
        if (!*dropped)
            answer(std::move(image));
    });
    dispatch.globalAsync(
        QualityOfService::userInteractive,
        [&queue = dispatch, &files = fileSystem, &images = codec, url, dropped, deliver] {
            if (*dropped)
                return;
            auto read = loadImage(files, images, url);
            Image image;
            if (auto* bitmap = std::get_if<Bitmap>(&read))
                image = std::make_shared<Bitmap>(std::move(*bitmap));
            queue.mainAsync([deliver, image]() mutable { deliver(std::move(image)); });
        });
}

} // namespace tallowbay
