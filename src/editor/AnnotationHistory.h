#pragma once

#include "editor/AnnotationCanvas.h"
#include "editor/ScreenshotRecord.h"

namespace tallowbay {

// What has happened to the items of a screenshot, and how it is taken back. The record is always
// that of the screenshot on the canvas; record and canvas hold the same items.
//
// Undo takes the topmost item away, whatever was done last: moves and resizes cannot be undone.
// What was undone or deleted comes back on top of the others. A new item ends what could be redone.
//
// Thread: main queue.
class AnnotationHistory {
public:
    explicit AnnotationHistory(AnnotationCanvas& canvas)
        : canvas(canvas)
    {
    }

    // What the canvas tells its window. Each brings the record up to date.
    void canvasDidAddAnnotation(ScreenshotRecord&, const std::vector<AnnotationItem>&);
    void annotationsChanged(ScreenshotRecord&, const std::vector<AnnotationItem>&);

    // Each is true if something has changed, which is to be saved then.
    bool undoAnnotation(ScreenshotRecord&);
    bool redoAnnotation(ScreenshotRecord&);
    bool deleteAnnotation(ScreenshotRecord&, std::size_t index);

private:
    void remove(ScreenshotRecord&, std::size_t index);

    AnnotationCanvas& canvas;
};

} // namespace tallowbay
