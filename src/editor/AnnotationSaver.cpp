#include "editor/AnnotationSaver.h"

#include "editor/AnnotationConstants.h"

namespace tallowbay {

void AnnotationSaver::save(EditedScreenshot edited)
{
    if (!edited.picture || edited.items.empty())
        return;
    writing.insert(edited.url);
    auto finished = lifetime.guard([this, url = edited.url] { writing.erase(url); });
    dispatch.globalAsync(
        QualityOfService::userInitiated,
        [&queue = dispatch, exporter = exporter, edited = std::move(edited), finished] {
            const auto flattened = exporter.flattenAnnotation(
                edited.picture, edited.items, edited.canvasSize, imageInset);
            if (flattened)
                exporter.writeFlattenedImage(*flattened, edited.url);
            queue.mainAsync(finished);
        });
}

} // namespace tallowbay
