#include "editor/window/AnnotationWindow.h"

#include "editor/AnnotationConstants.h"
#include "editor/AnnotationSaver.h"
#include "editor/window/AnnotationWindowPort.h"
#include "editor/window/EditorLook.h"
#include "platform/Clock.h"
#include "platform/DesktopSettings.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "platform/Screens.h"
#include "ui/ToastGate.h"
#include "ui/Views.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowbay {

AnnotationWindow::AnnotationWindow(
    const Platform& platform, Views& views, AnnotationSaver& saver, ToastGate& toasts)
    : fileSystem(platform.fileSystem)
    , console(platform.console)
    , clock(platform.clock)
    , screens(platform.screens)
    , saver(saver)
    , toasts(toasts)
    , captions(platform.calendar, platform.desktop.screenshotNameDates)
    , thumbnails(platform.dispatch, platform.fileSystem, platform.imageCodec)
    , saves(platform.dispatch, platform.fileSystem, platform.imageCodec, saver)
    , view(views.makeAnnotationWindow(*this))
    , drawing(std::make_unique<AnnotationCanvas>(*view, platform.textMeasurer))
    , history(std::make_unique<AnnotationHistory>(*drawing))
{
    drawing->setDelegate(this);
    saves.onWriteEnded = [this](const auto& url, bool succeeded) { writeEnded(url, succeeded); };
    thumbnails.onLoaded = [this](std::uint64_t id) { thumbnailLoaded(id); };
    scaleChanged(1);
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
    wantThumbnails();
}

// What was below the mouse may have moved away from it, and nothing tells of that.
void AnnotationWindow::stripChanged()
{
    hoveredCells.clear();
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
    wantThumbnails();
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
    wantThumbnails();
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
    thumbnails.setPaused(true);
    saves.show(record, [this](Image picture) { showPicture(std::move(picture)); });
    view->lookAgain();
    view->scrollToVisible(index);
}

// Items whose picture is missing lie where they were made; now they can be carried to this canvas.
void AnnotationWindow::showPicture(Image picture)
{
    thumbnails.setPaused(false);
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
    thumbnails.setPaused(false);
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
    thumbnails.fileChanged(url);
}

// Tools and history

void AnnotationWindow::toolSelected(int tag)
{
    if (strip.empty())
        return;
    drawing->commitTextIfNeeded();
    tool = annotationToolForTag(tag);
    swatchAlpha = tool == AnnotationTool::blur ? 0 : 1; // its mask has no colour
    view->animateSwatchCard(swatchAlpha, swatchFade); // first: a look finds it on its way
    view->lookAgain();
}

void AnnotationWindow::swatchSelected(std::size_t tag)
{
    if (tag >= swatchColorValues.size())
        return;
    swatch = tag;
    view->lookAgain();
}

Color AnnotationWindow::highlightColor() const
{
    return swatchColorValues.at(swatch);
}

double AnnotationWindow::toolRailAlpha() const
{
    return shownSomething ? 1 : idleToolRailAlpha;
}

void AnnotationWindow::undoAnnotation()
{
    if (!strip.empty())
        edited(history->undoAnnotation(strip.at(selected)));
}

void AnnotationWindow::redoAnnotation()
{
    if (!strip.empty())
        edited(history->redoAnnotation(strip.at(selected)));
}

void AnnotationWindow::deleteAnnotation(std::size_t index)
{
    edited(history->deleteAnnotation(strip.at(selected), index));
}

void AnnotationWindow::canvasDidAddAnnotation(const std::vector<AnnotationItem>& items)
{
    history->canvasDidAddAnnotation(strip.at(selected), items);
    edited(true);
}

void AnnotationWindow::annotationUpdated(
    std::size_t index, const std::vector<AnnotationItem>& items)
{
    if (index < strip.at(selected).annotations.size()) {
        history->annotationsChanged(strip.at(selected), items);
        edited(true);
    }
}

void AnnotationWindow::annotationsChanged(const std::vector<AnnotationItem>& items)
{
    history->annotationsChanged(strip.at(selected), items);
}

void AnnotationWindow::edited(bool changed)
{
    if (!changed)
        return;
    saves.edited(strip.at(selected), drawing->backgroundImage());
    republishClipboard();
}

// Cells

ThumbnailCell AnnotationWindow::cell(std::size_t index) const
{
    const ScreenshotRecord& record = strip.at(index);
    ThumbnailCell cell;
    cell.id = record.id;
    cell.caption = captions.parseTime(record.url, clock.wallNow());
    cell.badge = std::to_string(record.badgeNumber);
    cell.headerColor = headerPalette.at(record.headerColor);
    cell.background = hoveredCells.contains(record.id) ? hoveredCellBackground : cellBackground;
    cell.selected = index == selected;
    cell.checked = record.checked;
    cell.thumbnail = thumbnails.thumbnail(record.id);
    cell.name = "Screenshot " + cell.badge + (cell.caption.empty() ? "" : ", " + cell.caption);
    return cell;
}

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
    if (index != selected && hoveredCells.insert(strip.at(index).id).second)
        view->cellChanged(index);
}

void AnnotationWindow::mouseExitedCell(std::size_t index)
{
    if (index != selected && hoveredCells.erase(strip.at(index).id) > 0)
        view->cellChanged(index);
}

Image AnnotationWindow::canvasPreview() const
{
    return saves.isLoading() ? thumbnails.thumbnail(strip.at(selected).id) : nullptr;
}

void AnnotationWindow::thumbnailLoaded(std::uint64_t id)
{
    for (std::size_t index = 0; index < strip.size(); ++index) {
        if (strip.at(index).id == id)
            view->cellChanged(index);
    }
    if (canvasPreview() && strip.at(selected).id == id)
        view->lookAgain();
}

void AnnotationWindow::visibleSlotsChanged(std::size_t first, std::size_t last)
{
    if (first == firstVisible && last == lastVisible)
        return; // as for most of the steps of a glide
    firstVisible = first;
    lastVisible = last;
    wantThumbnails();
}

void AnnotationWindow::wantThumbnails()
{
    thumbnails.want(nearestFirst(strip, firstVisible, lastVisible));
}

void AnnotationWindow::scaleChanged(double pixelsPerPoint)
{
    const auto pixels = [&](double points) {
        return static_cast<int>(std::ceil(points * pixelsPerPoint));
    };
    thumbnails.setBox({pixels(imageWellSize.width), pixels(imageWellSize.height)});
}

// Keys

void AnnotationWindow::handleKeyDown(const KeyPress& key)
{
    switch (key.keyCode) {
    case keyCode::returnKey:
    case keyCode::keypadEnter:
        return returnPressed();
    case keyCode::escape:
        return confirmAndDismiss();
    case keyCode::left:
        return navigateVisually(-1);
    case keyCode::right:
        return navigateVisually(1);
    case keyCode::up:
        return toggleSelectedCheck();
    case keyCode::z:
        if (key.flags & eventFlag::command)
            return key.flags & eventFlag::shift ? redoAnnotation() : undoAnnotation();
        return;
    default:
        return;
    }
}

void AnnotationWindow::returnPressed()
{
    if (drawing->hasActiveTextField())
        drawing->commitTextIfNeeded();
    else
        confirmAndDismiss();
}

void AnnotationWindow::navigateVisually(int delta)
{
    if (const auto index = strip.neighbour(selected, delta))
        cellClicked(*index);
}

void AnnotationWindow::toggleSelectedCheck()
{
    if (!strip.empty())
        checkboxToggled(selected);
}

} // namespace tallowbay
