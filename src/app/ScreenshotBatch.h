#pragma once

#include "app/AcceptedScreenshots.h"
#include "base/Lifetime.h"
#include "capture/ImageCompressor.h"
#include "platform/Platform.h"
#include "platform/WindowSystem.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace tallowbay {

class EditorSlot;
class EditorStrip;
class ToastGate;

// The heart of the program: every new screenshot is compressed and joins the batch, and after each
// the whole batch stands on the pasteboard, so that one paste inserts all screenshots since the
// last paste. A paste ends the batch; one that comes while something is still being compressed, or
// while an edit of what stands on the pasteboard is being written, is held: the pasteboard is
// emptied, and the paste fired when the last of both has ended. Where that does not take long the
// user's own paste waits for it. Otherwise it is posted anew, but only into the window in which the
// user pressed; if another one is active by then, the batch stays on the pasteboard.
//
// A file whose last edit could not be written still shows what was there before, perhaps what the
// edit was to hide. Until an edit of it is written, it is left out of all that stands on the
// pasteboard.
//
// Thread: main queue. Compression runs in the background and hands its result back.
class ScreenshotBatch {
public:
    ScreenshotBatch(
        const Platform&, ToastGate&, const EditorSlot&, std::function<void()> firePaste);

    // A new screenshot in the system's folder. One that is known is not taken twice: while it is
    // being compressed, and for three seconds also under a new name.
    void acceptScreenshot(const std::filesystem::path&);

    // The user pressed the paste shortcut.
    void handlePaste();

    // The editor has come to the end of writing this file's edits. Where the last one failed, the
    // file leaves the pasteboard, and a paste that was held for it is dropped.
    void editWritten(const std::filesystem::path&, bool succeeded);

    void addToClipboard(const std::filesystem::path&);
    void writeClipboard(const std::vector<std::filesystem::path>&);

    // As writeClipboard(), without a word and without a moment in which nothing is there: for
    // parts of what has been pasted.
    void replaceClipboard(const std::vector<std::filesystem::path>&);

    void resetBatch();
    void undoLastScreenshot();
    void clearAllScreenshots();

    // A text is being extracted. Until the end, a paste does not end the batch.
    void beginTextExtraction() { ocrInProgress = true; }

    // The text joins those of the batch, and all of them stand on the pasteboard, in place of the
    // screenshots. Returns how many they are.
    std::size_t endTextExtraction(const std::string& text);
    void endTextExtractionWithoutText() { ocrInProgress = false; }

    // At quit: nothing of ours stays on the pasteboard, and nothing of others' is lost.
    void clearTallowbayClipboard();

    // At quit: compressions that are under way come to nothing, without a word.
    void abandonJobs() { *abandoned = true; }

    // Drops the screenshots whose files are gone; the pasteboard is left alone.
    void forgetMissingFiles();

    // Drops these screenshots; the pasteboard is left alone.
    void forget(const std::set<std::filesystem::path>&);

    // The compressed screenshots of the batch, oldest first.
    const std::vector<std::filesystem::path>& urls() const { return pendingURLs; }

    // Accepted screenshots whose processing has not ended.
    int compressing() const { return compressionInProgress; }

    // The pasteboard's change count after our own last write of a batch.
    std::int64_t lastWriteCount() const { return lastClipboardWriteCount; }

private:
    struct Skipped { };
    struct Failed { };
    using Outcome = std::variant<std::filesystem::path, Skipped, Failed>;

    // What a job in the background needs: copies, and seams that outlive it.
    struct Job {
        Platform platform;
        ImageCompressor compressor;
        std::filesystem::path screenshot;
        std::shared_ptr<const std::atomic<bool>> abandoned;

        Outcome process() const;
    };

    void finishJob(const std::filesystem::path& copy, const Outcome&);
    std::vector<std::filesystem::path> presentable() const;
    bool pasteboardIsOurs() const;
    bool showsFileBeingWritten() const;
    void publish();
    void keepBack(const std::filesystem::path&);
    void letOut(const std::filesystem::path&);
    void firePasteIfComplete();
    void firePasteIfWritten();
    void fireQueuedPaste();
    void postQueuedPaste();
    void dropPaste();
    void sayImages(const std::string& event) const;
    void forgetClipboard();
    void drop(const std::function<bool(const std::filesystem::path&)>& isGone);
    bool removeLastFromBatch();
    bool uncheckLastInEditor(EditorStrip&);

    const Platform platform;
    ToastGate& toasts;
    const EditorSlot& editor;
    const std::function<void()> firePaste;
    std::vector<std::filesystem::path> pendingURLs; // oldest first
    std::vector<std::string> pendingOCRTexts;
    int compressionInProgress = 0;
    bool pasteQueued = false;
    bool pasteReleased = false; // the user's own paste may have the batch, and may not have asked
    NativeWindow pasteWindow = 0; // in which the queued paste was pressed last
    bool pasteAwaitsWrite = false; // the queued paste is held for an edit, too
    std::vector<std::filesystem::path> clipboardURLs; // what is wanted on the pasteboard
    std::vector<std::filesystem::path> publishedURLs; // what was put there last
    std::set<std::filesystem::path> unwritten; // their last edit failed
    bool ocrInProgress = false;
    std::int64_t lastClipboardWriteCount = 0;
    ImageCompressor compressor;
    AcceptedScreenshots accepted;
    std::shared_ptr<std::atomic<bool>> abandoned = std::make_shared<std::atomic<bool>>(false);
    Lifetime lifetime;
};

} // namespace tallowbay
