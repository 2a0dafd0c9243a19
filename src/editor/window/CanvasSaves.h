#pragma once

#include "editor/AnnotationSaver.h"
#include "editor/ScreenshotRecord.h"
#include "editor/window/PictureLoader.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <list>
#include <optional>

namespace tallowbay {

// Brings the edits of the screenshot on the canvas into its file. An edit that is made before the
// picture is there is owed: it is saved as soon as the picture comes, also if the canvas shows
// another one by then.
//
// Thread: main queue.
class CanvasSaves {
public:
    // The saver outlives this object.
    CanvasSaves(Dispatch&, const FileSystem&, const ImageCodec&, AnnotationSaver&);

    // An owed edit has come to its end without the saver's help. The path is that of its file.
    std::function<void(const std::filesystem::path&, bool succeeded)> onWriteEnded;

    // The record is on the canvas now. The answer is never heard once another one is.
    void show(const ScreenshotRecord&, PictureLoader::Answer);
    void showNothing();
    bool isLoading() const { return pictures.isLoading(); }

    // The items of the record on the canvas have changed; its picture, or null.
    void edited(const ScreenshotRecord&, const Image&);

    // The record's picture has come, or null: there is none.
    void pictureCame(const ScreenshotRecord&, const Image&);

    // The record leaves the canvas, or may do so.
    void leave(const ScreenshotRecord&, const Image&);

    // The record goes, and its file is left as it is. True if an edit was owed.
    bool abandon();

    bool isBeingWritten(const std::filesystem::path&) const;

    // See EditorStrip. Pictures of owed edits are read on the spot.
    void finishWriting(std::chrono::milliseconds limit);

private:
    void saveBeside(EditedScreenshot);
    void tell(const std::filesystem::path&, bool succeeded) const;

    const FileSystem& fileSystem;
    const ImageCodec& codec;
    AnnotationSaver& saver;
    std::optional<EditedScreenshot> owed; // of the screenshot on the canvas
    std::list<EditedScreenshot> beside; // of others; their pictures are on their way
    PictureLoader pictures;
};

} // namespace tallowbay
