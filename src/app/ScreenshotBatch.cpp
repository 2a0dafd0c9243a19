#include "app/ScreenshotBatch.h"

#include "base/Paths.h"
#include "capture/ProductFolder.h"
#include "editor/EditorSlot.h"
#include "editor/EditorStrip.h"
#include "platform/Clock.h"
#include "platform/Console.h"
#include "platform/Dispatch.h"
#include "platform/FileSystem.h"
#include "platform/Pasteboard.h"
#include "ui/ToastGate.h"

#include <algorithm>
#include <utility>

namespace tallowbay {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

constexpr auto freshFor = 60s;

// Some programs do nothing else while they wait for what they paste; none takes this for failure.
constexpr auto pastePatience = 800ms;

std::string kibibytes(const FileSystem& fileSystem, const fs::path& file)
{
    return std::to_string(fileSystem.size(file).value_or(0) / 1024) + "KB";
}

std::string joinedByBlankLines(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += all.empty() ? text : "\n\n" + text;
    return all;
}

// By the older of its dates: what was restored or unpacked here is new in this folder, and yet no
// new screenshot. What has no date is taken for new.
bool isFresh(const FileSystem& fileSystem, const Clock& clock, const fs::path& file)
{
    const auto isRecent = [&](const std::optional<WallTime>& date) {
        return !date || clock.wallNow() - *date < freshFor;
    };
    return isRecent(fileSystem.creationDate(file)) && isRecent(fileSystem.modificationDate(file));
}

} // namespace

ScreenshotBatch::ScreenshotBatch(
    const Platform& platform, ToastGate& toasts, const EditorSlot& editor,
    std::function<void()> firePaste)
    : platform(platform)
    , toasts(toasts)
    , editor(editor)
    , firePaste(std::move(firePaste))
    , compressor(platform.fileSystem, platform.processes, platform.resources, platform.tools)
    , accepted(platform.fileSystem, platform.clock)
{
}

void ScreenshotBatch::acceptScreenshot(const fs::path& screenshot)
{
    const fs::path copy = compressor.outputFor(screenshot);
    if (!accepted.begin(screenshot, copy))
        return;
    // Queued before the job is, so that the counter is up before the job can bring it down.
    platform.dispatch.mainAsync(lifetime.guard([this] { ++compressionInProgress; }));
    auto finish =
        lifetime.guard([this, copy](const Outcome& outcome) { finishJob(copy, outcome); });
    platform.dispatch.globalAsync(
        QualityOfService::userInteractive,
        [job = Job{platform, compressor, screenshot, abandoned}, finish] {
            job.platform.dispatch.mainAsync(
                [finish, outcome = job.process()]() mutable { finish(outcome); });
        });
}

// In the background: touches the disk and the console, and nothing of the batch.
ScreenshotBatch::Outcome ScreenshotBatch::Job::process() const
{
    const FileSystem& files = platform.fileSystem;
    if (*abandoned || !isFresh(files, platform.clock, screenshot)
        || files.exists(compressor.outputFor(screenshot)))
        return Skipped{};
    const auto output = compressor.compress(screenshot);
    const std::string name = screenshot.filename();
    if (*abandoned)
        return Skipped{};
    if (!output) {
        platform.console.line("Compression failed for " + name);
        return Failed{};
    }
    platform.console.line(
        "✓ " + name + " → " + kibibytes(files, screenshot) + " → " + kibibytes(files, *output));
    return *output;
}

void ScreenshotBatch::finishJob(const fs::path& copy, const Outcome& outcome)
{
    const auto* output = std::get_if<fs::path>(&outcome);
    const auto reportedAgain = accepted.end(copy, output != nullptr);
    if (reportedAgain && !*abandoned) {
        // Renamed before the tool had read it: nothing was skipped, and a paste goes on waiting.
        acceptScreenshot(*reportedAgain);
        platform.dispatch.mainAsync(lifetime.guard([this] { --compressionInProgress; }));
        return;
    }
    --compressionInProgress;
    if (output)
        addToClipboard(*output);
    else if (std::holds_alternative<Failed>(outcome))
        toasts.show("Compression failed — screenshot skipped");
    firePasteIfWritten(); // an edit may have ended before, and had to wait for this
}

void ScreenshotBatch::addToClipboard(const fs::path& url)
{
    pendingURLs.push_back(url);
    unwritten.erase(url); // the file is new
    if (EditorStrip* strip = editor.strip())
        strip->addURL(url);
    writeClipboard(pendingURLs);
    toasts.show(std::to_string(pendingURLs.size()) + " Screenshot(s) Ready");
    firePasteIfComplete();
}

// Only a screenshot that was added fires a queued paste. If the last one outstanding is skipped or
// fails, the paste waits for the next that succeeds.
void ScreenshotBatch::firePasteIfComplete()
{
    if (compressionInProgress != 0 || !pasteQueued)
        return;
    pasteAwaitsWrite = showsFileBeingWritten();
    if (!pasteAwaitsWrite)
        fireQueuedPaste();
}

// The user's own paste may still ask for what is there now, and a second one would insert it again.
void ScreenshotBatch::fireQueuedPaste()
{
    pasteQueued = false;
    pasteReleased = true;
    platform.pasteboard.releasePaste(lifetime.guard([this](bool taken) {
        pasteReleased = false;
        if (!taken) {
            postQueuedPaste();
            return;
        }
        sayImages(">>> Queued paste has waited for ");
        resetBatch();
    }));
}

void ScreenshotBatch::sayImages(const std::string& event) const
{
    platform.console.line(event + std::to_string(publishedURLs.size()) + " image(s)");
}

// What another program has just copied may not have been counted yet.
void ScreenshotBatch::postQueuedPaste()
{
    if (publishedURLs.empty())
        return; // undone meanwhile
    if (platform.pasteboard.readFiles() != publishedURLs) {
        platform.console.line(">>> Queued paste not fired — something else has been copied");
    } else if (platform.windowSystem.activeWindow() == pasteWindow) {
        sayImages(">>> Firing queued paste with ");
        firePaste();
        resetBatch();
    } else {
        platform.console.line(">>> Queued paste not fired — another window is active");
        toasts.show("Ready — paste again");
    }
}

void ScreenshotBatch::editWritten(const fs::path& url, bool succeeded)
{
    if (succeeded)
        letOut(url);
    else
        keepBack(url);
    firePasteIfWritten();
}

void ScreenshotBatch::keepBack(const fs::path& url)
{
    unwritten.insert(url);
    if (std::ranges::find(clipboardURLs, url) == clipboardURLs.end())
        return;
    const bool pasteIsHeld = std::exchange(pasteAwaitsWrite, false);
    if (!pasteIsHeld && !pasteboardIsOurs())
        return;
    if (pasteIsHeld)
        dropPaste(); // no compression that is under way may fire it either
    publish();
    toasts.show("Compression failed — screenshot skipped");
}

void ScreenshotBatch::letOut(const fs::path& url)
{
    const bool wasKeptBack = unwritten.erase(url) > 0;
    const bool isWanted = std::ranges::find(clipboardURLs, url) != clipboardURLs.end();
    if (wasKeptBack && isWanted && pasteboardIsOurs())
        publish();
}

// A paste that is held for an edit does not need another screenshot to be fired.
void ScreenshotBatch::firePasteIfWritten()
{
    if (!pasteAwaitsWrite || compressionInProgress != 0 || showsFileBeingWritten())
        return;
    if (presentable().empty()) {
        forgetClipboard(); // undone meanwhile
        return;
    }
    pasteAwaitsWrite = false;
    publish();
    fireQueuedPaste();
}

// Nothing of what a paste was held for is left.
void ScreenshotBatch::forgetClipboard()
{
    clipboardURLs.clear();
    if ((std::exchange(pasteAwaitsWrite, false) && compressionInProgress == 0) || pasteReleased)
        dropPaste();
}

void ScreenshotBatch::dropPaste()
{
    pasteQueued = false;
    pasteReleased = false;
    platform.pasteboard.dropPaste();
}

bool ScreenshotBatch::showsFileBeingWritten() const
{
    const EditorStrip* strip = editor.strip();
    return strip && std::ranges::any_of(clipboardURLs, [&](const fs::path& url) {
               return strip->isBeingWritten(url);
           });
}

// Also if a clipboard manager has put there again what we had put there.
bool ScreenshotBatch::pasteboardIsOurs() const
{
    return platform.pasteboard.changeCount() == lastClipboardWriteCount
        || (!publishedURLs.empty() && platform.pasteboard.readFiles() == publishedURLs);
}

std::vector<fs::path> ScreenshotBatch::presentable() const
{
    auto urls = clipboardURLs;
    std::erase_if(urls, [this](const fs::path& url) { return unwritten.contains(url); });
    return urls;
}

void ScreenshotBatch::writeClipboard(const std::vector<fs::path>& urls)
{
    clipboardURLs = urls;
    publish();
}

void ScreenshotBatch::replaceClipboard(const std::vector<fs::path>& urls)
{
    clipboardURLs = urls;
    publishedURLs = presentable();
    platform.pasteboard.writeFiles(publishedURLs);
    lastClipboardWriteCount = platform.pasteboard.changeCount();
}

void ScreenshotBatch::publish()
{
    publishedURLs = presentable();
    platform.pasteboard.clear();
    // For a paste that is held it stays empty until all is written, without a moment between.
    if (!pasteQueued || !showsFileBeingWritten())
        platform.pasteboard.writeFiles(publishedURLs);
    lastClipboardWriteCount = platform.pasteboard.changeCount();
    sayImages("Clipboard updated: ");
}

void ScreenshotBatch::handlePaste()
{
    pasteAwaitsWrite = pasteAwaitsWrite || (showsFileBeingWritten() && pasteboardIsOurs());
    const bool isReleased = pasteReleased && platform.windowSystem.activeWindow() == pasteWindow;
    if (compressionInProgress < 1 && !pasteAwaitsWrite) {
        if (isReleased)
            return; // the first of the two that asks ends the batch
        if (pasteReleased)
            dropPaste();
        resetBatch();
        return;
    }
    pasteReleased = false;
    platform.pasteboard.holdPaste(pastePatience);
    pasteWindow = platform.windowSystem.activeWindow();
    pasteQueued = true;
    toasts.show("Pasting...");
    platform.console.line(">>> CMD+V QUEUED — clipboard cleared, waiting for compression");
}

// The pasteboard keeps what was just pasted until the next screenshot replaces it.
void ScreenshotBatch::resetBatch()
{
    if (ocrInProgress) {
        platform.console.line(">>> resetBatch SKIPPED — OCR in progress");
        return;
    }
    if (pendingURLs.empty() && pendingOCRTexts.empty())
        return;
    platform.console.line(
        ">>> resetBatch — clearing " + std::to_string(pendingURLs.size()) + " URL(s), "
        + std::to_string(pendingOCRTexts.size()) + " OCR text(s)");
    pendingURLs.clear();
    pendingOCRTexts.clear();
    EditorStrip* strip = editor.strip();
    if (strip && strip->showsImages())
        strip->setPendingDivider();
}

bool ScreenshotBatch::removeLastFromBatch()
{
    if (pendingURLs.empty())
        return false;
    pendingURLs.pop_back();
    writeClipboard(pendingURLs);
    return true;
}

// With an editor, its check marks decide what is on the pasteboard, not the batch.
bool ScreenshotBatch::uncheckLastInEditor(EditorStrip& strip)
{
    const auto unchecked = strip.uncheckLastURL();
    if (!unchecked)
        return false;
    std::erase(pendingURLs, *unchecked);
    writeClipboard(strip.checkedURLs());
    return true;
}

void ScreenshotBatch::undoLastScreenshot()
{
    EditorStrip* strip = editor.strip();
    const bool removed = strip ? uncheckLastInEditor(*strip) : removeLastFromBatch();
    toasts.show(removed ? "Last screenshot removed" : "Nothing to undo");
}

// The recognised texts stay, deliberately.
void ScreenshotBatch::clearAllScreenshots()
{
    pendingURLs.clear();
    if (EditorStrip* strip = editor.strip()) {
        strip->uncheckAll();
        if (strip->showsImages())
            strip->setPendingDivider();
    }
    forgetClipboard();
    platform.pasteboard.clear();
    toasts.show("Clipboard cleared");
}

std::size_t ScreenshotBatch::endTextExtraction(const std::string& text)
{
    ocrInProgress = false;
    pendingOCRTexts.push_back(text);
    forgetClipboard();
    platform.pasteboard.clear();
    platform.pasteboard.writeText(joinedByBlankLines(pendingOCRTexts));
    lastClipboardWriteCount = platform.pasteboard.changeCount();
    return pendingOCRTexts.size();
}

void ScreenshotBatch::clearTallowbayClipboard()
{
    const fs::path ours = optimizedFolder(platform.fileSystem);
    const auto files = platform.pasteboard.readFiles();
    if (std::ranges::any_of(files, [&](const fs::path& file) { return isWithin(file, ours); }))
        platform.pasteboard.clear();
}

void ScreenshotBatch::forgetMissingFiles()
{
    drop([this](const fs::path& url) { return !platform.fileSystem.exists(url); });
}

void ScreenshotBatch::forget(const std::set<fs::path>& expired)
{
    drop([&](const fs::path& url) { return expired.contains(url); });
}

void ScreenshotBatch::drop(const std::function<bool(const fs::path&)>& isGone)
{
    std::erase_if(pendingURLs, isGone);
    std::erase_if(clipboardURLs, isGone);
    firePasteIfWritten(); // it may have been held for one of these alone
}

} // namespace tallowbay
