#pragma once

#include "editor/window/AnnotationWindow.h"
#include "editor/window/AnnotationWindowPort.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "views/editor/CanvasCardView.h"
#include "views/editor/SwatchCardView.h"
#include "views/editor/ToolRailView.h"
#include "views/editor/strip/StripView.h"
#include "views/ui/Backdrop.h"
#include "views/ui/Fade.h"

#include <QTimer>
#include <QWidget>

namespace tallowbay::views {

// The editor on the screen: a window without a frame that covers the main screen and dims what lies
// below it.
//
// It is managed like any window, so that it gets the keyboard, and gives it back, as the desktop's
// own windows do. Where nothing shines through windows, the picture of the desktop that it shows in
// its place comes and goes as the window fades.
class AnnotationWindowView final : public QWidget, public AnnotationWindowPort {
public:
    // The window system and the backdrop outlive it.
    AnnotationWindowView(AnnotationWindow&, WindowSystem&, Backdrop&);

    double currentAlpha() const { return fade.currentAlpha(); }

    // The port
    void orderFront() override;
    void setAlpha(double alpha) override { fade.setAlpha(alpha); }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override
    {
        fade.animateAlpha(to, duration, std::move(completion));
    }
    void close() override;
    void makeKeyAndOrderFront() override;
    void returnKeyboard() override;
    void setIgnoresMouseEvents(bool) override;
    void lookAgain() override;
    void animateSwatchCard(double alpha, std::chrono::milliseconds duration) override
    {
        swatchCard->animateAlpha(alpha, duration);
    }
    void stripChanged() override { strip->stripChanged(); }
    void cellChanged(std::size_t index) override { strip->cellChanged(index); }
    void scrollToVisible(std::size_t index) override { strip->scrollToVisible(index); }
    std::unique_ptr<AnnotationCanvasPort> makeCanvasView(AnnotationCanvas&) override;

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void closeEvent(QCloseEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    bool event(QEvent*) override;
    bool eventFilter(QObject*, QEvent*) override;

private:
    class Curtain;

    void comeUp(bool withKeyboard);
    void place();
    void placeUntilItHolds(int attempts);
    void placeParts();
    void orderTabs();
    void backdropChanged();
    void forgetBackdrop();
    void scaleChanged();
    void askForBlur();
    void applyAlpha(double);
    void activeChanged(bool isActive);
    void stateChanged(Qt::WindowStates before);
    void followScreens();
    void followComposition();

    AnnotationWindow& logic;
    WindowSystem& windows;
    Backdrop& backdrop;
    const qt::GraphicsFonts fonts;
    CanvasCardView* const canvasCard;
    ToolRailView* const toolRail;
    SwatchCardView* const swatchCard;
    StripView* const strip;
    Curtain* const curtain;
    QWidget* canvas = nullptr;
    QTimer compositionLook;
    NativeWindow keyboardBefore = 0; // the window that had it
    Fade fade{*this, [this](double alpha) { applyAlpha(alpha); }};
};

} // namespace tallowbay::views
