#pragma once

#include "base/Lifetime.h"
#include "editor/saving/AnnotationExporter.h"
#include "platform/Dispatch.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>

namespace tallowbay {

// A screenshot's file, and what it is to show: the picture with the items of a canvas of that size.
struct EditedScreenshot {
    std::filesystem::path url;
    std::vector<AnnotationItem> items;
    Image picture;
    Size canvasSize;
    bool operator==(const EditedScreenshot&) const = default;
};

// Writes edited screenshots in the background. There is one for the whole program.
//
// What was asked for last is what the file shows once all saves of it have ended, whichever of them
// is the quickest: the saves of one file are made one after the other, and one that a newer save
// has overtaken leaves the file alone. Only if the newest fails, the newest that did not is
// written. Different files are written side by side.
//
// Thread: main queue.
class AnnotationSaver {
public:
    AnnotationSaver(Dispatch&, AnnotationExporter);
    ~AnnotationSaver(); // what was asked for is still written while the background works on

    // Without a picture, or without items, nothing is written: the file stays as it was written
    // last.
    void save(EditedScreenshot);

    // The files whose last save has not ended.
    std::set<std::filesystem::path> pathsBeingWritten() const;

    // At quit, while the tools may still run: blocks until all that was asked for is in its file,
    // no longer than the limit. False if something was still missing then.
    bool finishWriting(std::chrono::milliseconds limit);

    // Called when a path leaves pathsBeingWritten(); tells whether the file shows what was asked
    // for last. It may ask for another save.
    std::function<void(const std::filesystem::path&, bool succeeded)> onWritten;

private:
    class FileSaves;

    void finish(const std::filesystem::path&);

    Dispatch& dispatch;
    const AnnotationExporter exporter;
    std::map<std::filesystem::path, std::shared_ptr<FileSaves>> writing;
    Lifetime lifetime;
};

} // namespace tallowbay
