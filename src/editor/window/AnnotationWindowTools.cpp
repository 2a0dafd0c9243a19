// What the tools, the history and the keys of the editor's window do.

#include "editor/AnnotationConstants.h"
#include "editor/window/AnnotationWindow.h"
#include "editor/window/AnnotationWindowPort.h"
#include "editor/window/EditorLook.h"

namespace tallowbay {

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
