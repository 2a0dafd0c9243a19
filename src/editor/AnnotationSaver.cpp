#include "editor/AnnotationSaver.h"

#include "base/Fatal.h"
#include "editor/AnnotationConstants.h"

namespace tallowbay {

void AnnotationSaver::saveCurrentAnnotation(
    const AnnotationCanvas& canvas, std::vector<std::vector<AnnotationItem>>& annotations,
    const std::vector<std::filesystem::path>& imageURLs, std::size_t selectedIndex)
{
    if (!canvas.backgroundImage())
        return;
    auto& items = checkedAt(annotations, selectedIndex);
    items = canvas.annotations();
    if (items.empty())
        return;
    const std::filesystem::path url = checkedAt(imageURLs, selectedIndex);
    writing.insert(url);
    auto finished = lifetime.guard([this, url] { writing.erase(url); });
    dispatch.globalAsync(
        QualityOfService::userInitiated,
        [&queue = dispatch, exporter = exporter, image = canvas.backgroundImage(), items,
         size = canvas.size(), url, finished] {
            const auto flattened = exporter.flattenAnnotation(image, items, size, imageInset);
            if (flattened)
                exporter.writeFlattenedImage(*flattened, url);
            queue.mainAsync(finished);
        });
}

} // namespace tallowbay
