#pragma once

#include "base/Lifetime.h"
#include "editor/AnnotationCanvas.h"
#include "editor/AnnotationHistory.h"
#include "editor/EditorStrip.h"
#include "editor/strip/ThumbnailStrip.h"
#include "editor/window/CanvasSaves.h"
#include "editor/window/StripCells.h"
#include "editor/window/ToolRail.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tallowbay {

class AnnotationSaver;
class AnnotationWindowPort;
class Console;
class FileSystem;
class Screens;
class ToastGate;
class Views;
struct Platform;

// The editor: the canvas with its tools, and the strip of recent screenshots below it. It covers
// the screen, and is hidden rather than destroyed, so that items and history are there again.
//
// Pictures are read in the background. Until the selected one is there, the canvas takes no
// drawing; what is undone or redone meanwhile is saved as soon as it is.
//
// Thread: main queue.
class AnnotationWindow final : public EditorStrip, private AnnotationCanvasDelegate {
public:
    using Paths = ThumbnailStrip::Paths;

    // Built with all of the strip that was saved and still exists. The saver and the gate outlive
    // the window.
    AnnotationWindow(const Platform&, Views&, AnnotationSaver&, ToastGate&);
    ~AnnotationWindow() override;

    // What belongs on the clipboard: when the user confirms, and after every change of it.
    std::function<void(const Paths&)> onConfirm;
    std::function<void(const Paths&)> onClipboardUpdate;

    // A write that isBeingWritten() has told of has ended without the saver's help.
    std::function<void(const std::filesystem::path&, bool succeeded)> onWriteEnded;

    // Opening and closing.
    void show(); // in front and with the keyboard, faded in
    void showSettings(); // they stay if they are there
    void confirmAndDismiss(); // what belongs on the clipboard goes there, and the window fades out
    bool visible() const { return onScreen && !minimized; } // until it has faded out
    bool isClosing() const { return closing; } // from then on until it is shown again

    // The strip, for the program.
    void addURL(const std::filesystem::path&) override;
    std::optional<std::filesystem::path> uncheckLastURL() override;
    bool uncheckAll() override;
    Paths checkedURLs() const override { return strip.checkedURLs(); }
    bool showsImages() const override { return !strip.empty(); }
    bool isBeingWritten(const std::filesystem::path&) const override;
    void finishWriting(std::chrono::milliseconds limit) override;
    void setPendingDivider() override { strip.pendingDivider = true; }
    void clearPendingDivider() { strip.pendingDivider = false; }
    void removeDeletedFiles() override;
    void removeExpiredURLs(const std::set<std::filesystem::path>&) override;

    // The saver has come to the end of this file.
    void fileWritten(const std::filesystem::path&, bool succeeded);

    // What the view shows, for the rest see EditorLook.
    Rect frame() const; // of the main screen
    std::string title() const { return "Tallowbay"; }
    std::string placeholder() const { return "Take a screenshot to get started"; }
    bool placeholderHidden() const { return shownSomething; }
    std::optional<Color> headerColor() const { return canvasHeader; } // empty: none yet
    double toolRailAlpha() const;
    double swatchCardAlpha() const { return swatchAlpha; }
    std::vector<RailButton> tools() const { return toolButtons(tool); }
    std::size_t selectedSwatch() const { return swatch; } // of swatchColorValues
    bool settingsAvailable() const { return false; } // without, their button is not shown
    bool settingsVisible() const { return settingsShown; }
    AnnotationCanvas& canvas() { return *drawing; } // once the view is made

    // The selected screenshot's thumbnail while its picture is on its way; else null.
    Image canvasPreview() const;

    // The strip as it stands on the screen, left to right: the index of a screenshot, or empty for
    // a divider.
    const std::vector<ThumbnailStrip::Slot>& slots() const { return strip.slots(); }
    std::size_t count() const { return strip.size(); }
    std::size_t selectedIndex() const { return selected; } // means nothing in an empty strip
    ThumbnailCell cell(std::size_t index) const { return cells.cell(index, index == selected); }
    std::uint64_t id(std::size_t index) const { return strip.at(index).id; } // see ThumbnailCell
    const std::filesystem::path& url(std::size_t index) const { return strip.at(index).url; }

    // What the user does.
    void toolSelected(int tag);
    void swatchSelected(std::size_t tag);
    void undoAnnotation();
    void redoAnnotation();
    void toggleSettings();
    void cellClicked(std::size_t index); // anywhere but on its check box
    void checkboxToggled(std::size_t index);
    void mouseEnteredCell(std::size_t index);
    void mouseExitedCell(std::size_t index);
    void handleKeyDown(const KeyPress&) override; // also for keys that a button has no use for

    // What happens to the view.
    void becameKey();
    void eventArrived(bool windowIsKey); // before the event is handled
    void gestureLost() { drawing->gestureLost(); } // see AnnotationCanvas
    void closeRequested() { confirmAndDismiss(); } // by the window manager
    void minimizedChanged(bool isMinimized) { minimized = isMinimized; } // by the same
    void visibleSlotsChanged(std::size_t first, std::size_t last) // both are seen, at least in part
    {
        cells.visibleSlotsChanged(first, last);
    }
    void scaleChanged(double pixelsPerPoint) // of the screen; 1 until it is told
    {
        cells.scaleChanged(pixelsPerPoint);
    }

private:
    // The canvas's delegate.
    AnnotationTool selectedTool() const override { return tool; }
    Color highlightColor() const override;
    void canvasDidAddAnnotation(const std::vector<AnnotationItem>&) override;
    void annotationUpdated(std::size_t index, const std::vector<AnnotationItem>&) override;
    void annotationsChanged(const std::vector<AnnotationItem>&) override;
    void deleteAnnotation(std::size_t index) override;

    void restoreSession();
    void saveSession();
    void stripChanged();
    void insertBatchDivider();
    void selectThumbnail(std::size_t index);
    void showPicture(Image);
    void emptyCanvas();
    void leaveScreenshot();
    void abandonScreenshot();
    void writeEnded(const std::filesystem::path&, bool succeeded);
    void edited(bool changed);
    void republishClipboard();
    void navigateVisually(int delta);
    void toggleSelectedCheck();
    void returnPressed();
    void animateOpen();
    void animateClose();
    void closed();
    void thumbnailCame(std::size_t index);

    FileSystem& fileSystem;
    Console& console;
    const Screens& screens;
    AnnotationSaver& saver;
    ToastGate& toasts;
    ThumbnailStrip strip;
    std::size_t selected = 0;
    AnnotationTool tool = AnnotationTool::highlight;
    std::size_t swatch = 0;
    double swatchAlpha = 0;
    std::optional<Color> canvasHeader;
    bool shownSomething = false;
    bool onScreen = false;
    bool minimized = false;
    bool closing = false;
    bool settingsShown = false;
    StripCells cells;
    CanvasSaves saves;
    std::unique_ptr<AnnotationWindowPort> view;
    std::unique_ptr<AnnotationCanvas> drawing;
    std::unique_ptr<AnnotationHistory> history;
    Lifetime lifetime;
};

} // namespace tallowbay
