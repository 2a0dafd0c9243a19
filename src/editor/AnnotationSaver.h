#pragma once

#include "base/Lifetime.h"
#include "editor/AnnotationCanvas.h"
#include "editor/AnnotationExporter.h"
#include "platform/Dispatch.h"

#include <set>

namespace tallowbay {

// Saves what the canvas shows, in the background. There is one for the whole program.
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

    // Takes the canvas's items over into the list of the selected picture and, unless there are
    // none, writes the picture with them. A canvas without a picture saves nothing. An index
    // outside of the lists stops the process.
    void saveCurrentAnnotation(
        const AnnotationCanvas&, std::vector<std::vector<AnnotationItem>>& annotations,
        const std::vector<std::filesystem::path>& imageURLs, std::size_t selectedIndex);

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
