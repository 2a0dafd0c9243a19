#include "editor/AnnotationHistory.h"

#include "editor/AnnotationConstants.h"
#include "editor/ImagePlacement.h"

#include <utility>

namespace tallowbay {

void AnnotationHistory::canvasDidAddAnnotation(
    ScreenshotRecord& record, const std::vector<AnnotationItem>& items)
{
    annotationsChanged(record, items);
    record.redo.clear();
}

void AnnotationHistory::annotationsChanged(
    ScreenshotRecord& record, const std::vector<AnnotationItem>& items)
{
    record.annotations = items;
    if (const auto change = PlacementChange::between(
            record.canvasSize, canvas.placedOn(), canvas.backgroundImage(), imageInset))
        change->carry(record.redo);
    record.canvasSize = canvas.placedOn();
}

bool AnnotationHistory::undoAnnotation(ScreenshotRecord& record)
{
    if (record.annotations.empty())
        return false;
    remove(record, record.annotations.size() - 1);
    return true;
}

bool AnnotationHistory::redoAnnotation(ScreenshotRecord& record)
{
    if (record.redo.empty())
        return false;
    record.annotations.push_back(std::move(record.redo.back()));
    record.redo.pop_back();
    canvas.appendAnnotation(record.annotations.back());
    return true;
}

bool AnnotationHistory::deleteAnnotation(ScreenshotRecord& record, std::size_t index)
{
    if (index >= record.annotations.size())
        return false;
    remove(record, index);
    canvas.clearSelection();
    return true;
}

void AnnotationHistory::remove(ScreenshotRecord& record, std::size_t index)
{
    const auto place = record.annotations.begin() + static_cast<std::ptrdiff_t>(index);
    record.redo.push_back(std::move(*place));
    record.annotations.erase(place);
    canvas.removeAnnotation(index);
}

} // namespace tallowbay
