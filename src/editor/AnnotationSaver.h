#pragma once

#include "base/Lifetime.h"
#include "editor/AnnotationExporter.h"
#include "platform/Dispatch.h"

#include <set>

namespace tallowbay {

// A screenshot's file, and what it is to show: the picture with the items of a canvas of that size.
struct EditedScreenshot {
    std::filesystem::path url;
    std::vector<AnnotationItem> items;
    Image picture;
    Size canvasSize;
};

// Writes edited screenshots in the background. There is one for the whole program.
//
// Saves are neither merged nor ordered: of two saves of one file the one that ends later wins.
// Thread: main queue.
class AnnotationSaver {
public:
    AnnotationSaver(Dispatch& dispatch, AnnotationExporter exporter)
        : dispatch(dispatch)
        , exporter(std::move(exporter))
    {
    }

    // Without a picture, or without items, nothing is written: the file stays as it was written
    // last.
    void save(EditedScreenshot);

    // From the moment that a save is asked for until one save of that path has ended; another one
    // of the same path may still be writing then.
    const std::set<std::filesystem::path>& pathsBeingWritten() const { return writing; }

private:
    Dispatch& dispatch;
    AnnotationExporter exporter;
    std::set<std::filesystem::path> writing;
    Lifetime lifetime;
};

} // namespace tallowbay
