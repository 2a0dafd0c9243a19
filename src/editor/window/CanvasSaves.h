#pragma once

#include "editor/ScreenshotRecord.h"
#include "editor/saving/AnnotationSaver.h"
#include "editor/window/PictureLoader.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>

namespace tallowbay {

// Brings the edits of the screenshot on the canvas into its file. An edit that is made before the
// picture is there is owed: it is saved as soon as the picture comes, also if the canvas shows
// another one by then. As for every save, what was asked for last is what the file shows in the
// end, and a list that has become empty asks for nothing.
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

    // The picture of the record on the canvas has come, or null: there is none.
    void pictureCame(const Image&);

    // The record leaves the canvas, or may do so. Nothing is written twice in the same way.
    void leave(const ScreenshotRecord&, const Image&);

    // The saver has come to the end of a file.
    void fileWritten(const std::filesystem::path&, bool succeeded);

    // These files are left as they are. Returns those for which an edit was owed.
    std::set<std::filesystem::path> abandon(const std::set<std::filesystem::path>&);

    bool isBeingWritten(const std::filesystem::path&) const;

    // See EditorStrip. Pictures of owed edits are read on the spot.
    void finishWriting(std::chrono::milliseconds limit);

private:
    void save(EditedScreenshot);
    void saveBeside(EditedScreenshot);
    void saveOwed(EditedScreenshot, const Image&);
    void overtake(const std::filesystem::path&);
    void tell(const std::filesystem::path&, bool succeeded) const;

    const FileSystem& fileSystem;
    const ImageCodec& codec;
    AnnotationSaver& saver;
    std::optional<EditedScreenshot> owed; // of the screenshot on the canvas
    std::map<std::uint64_t, EditedScreenshot> beside; // of others; pictures are on their way
    std::uint64_t lastBeside = 0;
    std::optional<EditedScreenshot> newest; // that the saver got, unless it failed
    PictureLoader pictures;
};

} // namespace tallowbay
