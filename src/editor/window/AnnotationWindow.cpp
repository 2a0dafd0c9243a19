#include "editor/window/AnnotationWindow.h"

#include "editor/saving/AnnotationSaver.h"
#include "editor/window/AnnotationWindowPort.h"
#include "editor/window/EditorLook.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "platform/Screens.h"
#include "ui/ToastGate.h"
#include "ui/Views.h"

#include <algorithm>
#include <utility>

namespace tallowbay {

AnnotationWindow::AnnotationWindow(
    const Platform& platform, Views& views, AnnotationSaver& saver, ToastGate& toasts)
    : fileSystem(platform.fileSystem)
    , console(platform.console)
    , screens(platform.screens)
    , saver(saver)
    , toasts(toasts)
    , cells(platform, strip)
    , saves(platform.dispatch, platform.fileSystem, platform.imageCodec, saver)
    , view(views.makeAnnotationWindow(*this))
    , drawing(std::make_unique<AnnotationCanvas>(*view, platform.textMeasurer))
    , history(std::make_unique<AnnotationHistory>(*drawing))
{
    drawing->setDelegate(this);
    saves.onWriteEnded = [this](const auto& url, bool succeeded) { writeEnded(url, succeeded); };
    cells.onThumbnail = [this](std::size_t index) { thumbnailCame(index); };
    restoreSession();
}

AnnotationWindow::~AnnotationWindow()
{
    drawing->setDelegate(nullptr);
}

// Opening and closing

void AnnotationWindow::show()
{
    closing = false;
    minimized = false;
    onScreen = true;
    view->setIgnoresMouseEvents(false);
    view->setAlpha(0);
    view->makeKeyAndOrderFront();
    animateOpen();
}

void AnnotationWindow::animateOpen()
{
    view->animateAlpha(1, editorFadeIn, nullptr);
}

void AnnotationWindow::showSettings()
{
    if (!settingsAvailable() || std::exchange(settingsShown, true))
        return;
    view->lookAgain();
}

void AnnotationWindow::toggleSettings()
{
    if (!settingsAvailable())
        return;
    settingsShown = !settingsShown;
    view->lookAgain();
}

void AnnotationWindow::confirmAndDismiss()
{
    leaveScreenshot();
    if (const auto confirm = onConfirm)
        confirm(strip.urlsForClipboard());
    animateClose();
}

void AnnotationWindow::animateClose()
{
    closing = true;
    view->setIgnoresMouseEvents(true);
    view->returnKeyboard(); // now: what is typed during the fade is meant for what lies below
    view->animateAlpha(0, editorFadeOut, lifetime.guard([this] { closed(); }));
}

// Deliberately without a look at what has happened during the fade.
void AnnotationWindow::closed()
{
    onScreen = false;
    gestureLost();
    view->close();
}

void AnnotationWindow::becameKey()
{
    // The field in which text is being typed is a part of the canvas and keeps the keyboard.
    if (!drawing->hasActiveTextField())
        drawing->becomeFirstResponder();
}

void AnnotationWindow::eventArrived(bool windowIsKey)
{
    if (closing || windowIsKey)
        return;
    view->makeKeyAndOrderFront();
    becameKey();
}

Rect AnnotationWindow::frame() const
{
    return screens.mainFrame().value_or(Rect{{0, 0}, screenlessEditorSize});
}

// The strip

void AnnotationWindow::addURL(const std::filesystem::path& url)
{
    leaveScreenshot();
    if (std::exchange(strip.pendingDivider, false))
        insertBatchDivider();
    const std::size_t index = strip.addURL(url);
    stripChanged();
    selectThumbnail(index);
    saveSession();
    cells.wantThumbnails();
}

// What was below the mouse may have moved away from it, and nothing tells of that.
void AnnotationWindow::stripChanged()
{
    cells.forgetHover();
    view->stripChanged();
}

void AnnotationWindow::insertBatchDivider()
{
    if (strip.insertBatchDivider())
        saveSession();
}

std::optional<std::filesystem::path> AnnotationWindow::uncheckLastURL()
{
    const auto index = strip.uncheckLast();
    if (!index)
        return std::nullopt;
    view->cellChanged(*index);
    saveSession();
    return strip.at(*index).url;
}

bool AnnotationWindow::uncheckAll()
{
    if (!strip.uncheckAll())
        return false;
    for (std::size_t index = 0; index < strip.size(); ++index)
        view->cellChanged(index);
    saveSession();
    return true;
}

void AnnotationWindow::finishWriting(std::chrono::milliseconds limit)
{
    onClipboardUpdate = nullptr; // the pasteboard has been given back
    gestureLost();
    drawing->commitTextIfNeeded();
    saves.finishWriting(limit);
}

bool AnnotationWindow::isBeingWritten(const std::filesystem::path& url) const
{
    return saves.isBeingWritten(url);
}

void AnnotationWindow::removeDeletedFiles()
{
    const auto beingWritten = saver.pathsBeingWritten();
    std::set<std::filesystem::path> missing;
    for (const ScreenshotRecord& record : strip.screenshots()) {
        if (!beingWritten.contains(record.url) && !fileSystem.exists(record.url))
            missing.insert(record.url);
    }
    if (!missing.empty())
        removeExpiredURLs(missing);
}

void AnnotationWindow::removeExpiredURLs(const std::set<std::filesystem::path>& paths)
{
    const auto expired = [&](const ScreenshotRecord& record) { return paths.contains(record.url); };
    if (std::ranges::none_of(strip.screenshots(), expired))
        return;
    if (expired(strip.at(selected)))
        abandonScreenshot();
    else
        leaveScreenshot();
    const auto abandoned = saves.abandon(paths);
    strip.remove(paths);
    stripChanged();
    if (strip.empty())
        emptyCanvas();
    else
        selectThumbnail(std::min(strip.size() - 1, selected));
    saveSession();
    republishClipboard();
    cells.wantThumbnails();
    for (const auto& url : abandoned)
        writeEnded(url, true); // nothing of it is on the clipboard any more
}

void AnnotationWindow::restoreSession()
{
    const auto items = SessionStore::load(fileSystem);
    if (!items || items->empty())
        return;
    const auto shown =
        strip.restore(*items, [&](const auto& path) { return fileSystem.exists(path); });
    if (!shown) {
        SessionStore::clear(fileSystem);
        return;
    }
    stripChanged();
    selectThumbnail(*shown);
    cells.wantThumbnails();
}

void AnnotationWindow::saveSession()
{
    SessionStore::save(fileSystem, console, strip.session());
}

void AnnotationWindow::republishClipboard()
{
    if (const auto update = onClipboardUpdate)
        update(strip.urlsForClipboard());
}

// The screenshot on the canvas

void AnnotationWindow::selectThumbnail(std::size_t index)
{
    const ScreenshotRecord& record = strip.at(index);
    shownSomething = true;
    swatchAlpha = 1;
    const std::size_t former = std::exchange(selected, index);
    if (former < strip.size())
        view->cellChanged(former);
    view->cellChanged(index);
    canvasHeader = headerPalette.at(index % headerPaletteSize);
    drawing->setBackgroundImage(nullptr);
    drawing->setAnnotations(record.annotations, record.canvasSize);
    cells.setLoadingPaused(true);
    saves.show(record, [this](Image picture) { showPicture(std::move(picture)); });
    view->lookAgain();
    view->scrollToVisible(index);
}

// Items whose picture is missing lie where they were made; now they can be carried to this canvas.
void AnnotationWindow::showPicture(Image picture)
{
    cells.setLoadingPaused(false);
    if (!picture)
        toasts.show("Could not load image");
    drawing->setBackgroundImage(std::move(picture));
    const ScreenshotRecord& record = strip.at(selected);
    drawing->setAnnotations(record.annotations, record.canvasSize);
    view->lookAgain();
    saves.pictureCame(drawing->backgroundImage());
}

void AnnotationWindow::emptyCanvas()
{
    saves.showNothing();
    cells.setLoadingPaused(false);
    drawing->setBackgroundImage(nullptr);
    drawing->setAnnotations({});
    view->lookAgain();
}

// Nothing that the user has begun on it is lost.
void AnnotationWindow::leaveScreenshot()
{
    gestureLost();
    drawing->commitTextIfNeeded();
    if (!strip.empty())
        saves.leave(strip.at(selected), drawing->backgroundImage());
}

// Its file is gone, and nothing may bring it back.
void AnnotationWindow::abandonScreenshot()
{
    drawing->setBackgroundImage(nullptr);
    drawing->abandonText();
}

void AnnotationWindow::writeEnded(const std::filesystem::path& url, bool succeeded)
{
    if (const auto ended = onWriteEnded)
        ended(url, succeeded);
}

void AnnotationWindow::fileWritten(const std::filesystem::path& url, bool succeeded)
{
    saves.fileWritten(url, succeeded);
    cells.fileChanged(url);
}

// Cells

void AnnotationWindow::cellClicked(std::size_t index)
{
    leaveScreenshot();
    selectThumbnail(index);
}

void AnnotationWindow::checkboxToggled(std::size_t index)
{
    strip.at(index).checked = !strip.at(index).checked;
    view->cellChanged(index);
    saveSession();
    republishClipboard();
}

// The selected cell keeps whatever background it has.
void AnnotationWindow::mouseEnteredCell(std::size_t index)
{
    if (index != selected && cells.setHovered(index, true))
        view->cellChanged(index);
}

void AnnotationWindow::mouseExitedCell(std::size_t index)
{
    if (index != selected && cells.setHovered(index, false))
        view->cellChanged(index);
}

Image AnnotationWindow::canvasPreview() const
{
    return saves.isLoading() ? cells.thumbnail(selected) : nullptr;
}

void AnnotationWindow::thumbnailCame(std::size_t index)
{
    view->cellChanged(index);
    if (index == selected && canvasPreview())
        view->lookAgain();
}

} // namespace tallowbay
