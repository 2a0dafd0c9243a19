#include "views/editor/AnnotationWindowView.h"

#include "editor/window/EditorLook.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/QtColor.h"
#include "views/editor/AnnotationCanvasView.h"
#include "views/editor/EditorLayout.h"
#include "views/editor/KeyEvents.h"
#include "views/ui/RoundedRegion.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWindow>

namespace tallowbay::views {

namespace {

constexpr int placingAttempts = 10;
constexpr std::chrono::milliseconds placingPause{100};

constexpr auto compositionLookInterval = std::chrono::milliseconds(200);

// What a person does to the window; the mouse's passing over it is nothing of that kind.
bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        return true;
    default:
        return false;
    }
}

PixelRegion regionOf(const GlassCard& card, double scale)
{
    const PixelSize size{qRound(card.width() * scale), qRound(card.height() * scale)};
    PixelRegion region = roundedRegion(size, card.radius() * scale);
    for (PixelRect& part : region) {
        part.x += qRound(card.x() * scale);
        part.y += qRound(card.y() * scale);
    }
    return region;
}

} // namespace

// The desktop before everything else, as much of it as the window is transparent.
class AnnotationWindowView::Curtain final : public QWidget {
public:
    Curtain(const Backdrop& backdrop, QWidget* parent)
        : QWidget(parent)
        , backdrop(backdrop)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

    void setOpacity(double wanted)
    {
        opacity = wanted;
        setVisible(opacity > 0);
        raise();
        update();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        painter.setOpacity(opacity);
        backdrop.paint(painter, event->rect());
    }

private:
    const Backdrop& backdrop;
    double opacity = 0;
};

AnnotationWindowView::AnnotationWindowView(
    AnnotationWindow& logic, WindowSystem& windows, Backdrop& backdrop)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , logic(logic)
    , windows(windows)
    , backdrop(backdrop)
    , canvasCard(new CanvasCardView(logic, backdrop, this))
    , toolRail(new ToolRailView(logic, backdrop, this))
    , swatchCard(new SwatchCardView(logic, backdrop, this))
    , strip(new StripView(logic, this))
    , curtain(new Curtain(backdrop, this))
{
    setObjectName(QStringLiteral("annotationWindow"));
    setWindowTitle(QString::fromStdString(logic.title()));
    setAttribute(Qt::WA_TranslucentBackground);
    setMinimumSize(1, 1); // the screen decides, however small it is
    place();
    winId();
    windowHandle()->installEventFilter(this);
    followScreens();
    followComposition();
}

// Window

// A window manager moves no window that fills a screen.
void AnnotationWindowView::place()
{
    const QRect wanted = qt::desktopRect(logic.frame());
    const bool fillsAnother = isVisible() && isFullScreen() && geometry() != wanted;
    if (fillsAnother)
        setWindowState(windowState() & ~Qt::WindowFullScreen);
    setGeometry(wanted);
    if (fillsAnother)
        setWindowState(windowState() | Qt::WindowFullScreen);
}

// Screens that change at once are told of one by one, and a window manager may do something of its
// own in between.
void AnnotationWindowView::placeUntilItHolds(int attempts)
{
    if (!isVisible() || attempts == 0)
        return;
    if (geometry() != qt::desktopRect(logic.frame()))
        place();
    QTimer::singleShot(placingPause, this, [=, this] { placeUntilItHolds(attempts - 1); });
}

void AnnotationWindowView::followScreens()
{
    const auto follow = [this] { placeUntilItHolds(placingAttempts); };
    connect(qApp, &QGuiApplication::primaryScreenChanged, this, follow);
    connect(qApp, &QGuiApplication::screenRemoved, this, follow, Qt::QueuedConnection);
    const auto followScreen = [this, follow](QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, follow);
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, [this] { scaleChanged(); });
    };
    for (QScreen* screen : QGuiApplication::screens())
        followScreen(screen);
    connect(qApp, &QGuiApplication::screenAdded, this, followScreen);
    connect(windowHandle(), &QWindow::screenChanged, this, [this] { scaleChanged(); });
}

// Nobody tells. While it is open, it asks now and then.
void AnnotationWindowView::followComposition()
{
    connect(&compositionLook, &QTimer::timeout, this, [this] {
        if (backdrop.compositionChanged())
            backdropChanged();
    });
}

// Also without another size in points, all pixels are others.
void AnnotationWindowView::scaleChanged()
{
    backdropChanged();
    for (QWidget* part : findChildren<QWidget*>())
        part->update();
    logic.scaleChanged(devicePixelRatioF());
}

void AnnotationWindowView::orderFront()
{
    comeUp(false);
}

void AnnotationWindowView::comeUp(bool withKeyboard)
{
    setAttribute(Qt::WA_ShowWithoutActivating, !withKeyboard);
    if (!isVisible() || isMinimized()) {
        backdrop.look();
        place();
        backdropChanged();
        windows.keepOffTaskbar(winId());
    }
    setWindowState(Qt::WindowFullScreen); // showFullScreen() would take the keyboard, too
    show();
    raise();
    compositionLook.start(compositionLookInterval);
}

void AnnotationWindowView::makeKeyAndOrderFront()
{
    if (const NativeWindow active = windows.activeWindow(); active != winId())
        keyboardBefore = active;
    comeUp(true);
    activateWindow();
    windows.activate(winId());
}

void AnnotationWindowView::returnKeyboard()
{
    if (isActiveWindow() && keyboardBefore != 0)
        windows.activate(keyboardBefore);
}

void AnnotationWindowView::close()
{
    hide();
    compositionLook.stop();
    forgetBackdrop();
}

void AnnotationWindowView::forgetBackdrop()
{
    backdrop.forget();
    backdropChanged();
}

void AnnotationWindowView::setIgnoresMouseEvents(bool ignores)
{
    windowHandle()->setFlag(Qt::WindowTransparentForInput, ignores);
}

void AnnotationWindowView::applyAlpha(double alpha)
{
    const bool composed = windows.composesWindows();
    setWindowOpacity(composed ? alpha : 1);
    curtain->setOpacity(composed ? 0 : 1 - alpha);
}

void AnnotationWindowView::backdropChanged()
{
    for (GlassCard* card :
         {static_cast<GlassCard*>(canvasCard), static_cast<GlassCard*>(toolRail),
          static_cast<GlassCard*>(swatchCard)})
        card->backdropChanged();
    askForBlur();
    update();
}

void AnnotationWindowView::askForBlur()
{
    if (!backdrop.blursBehind())
        return windows.blurBehind(winId(), {});
    PixelRegion all;
    for (const GlassCard* card :
         {static_cast<GlassCard*>(canvasCard), static_cast<GlassCard*>(toolRail)}) {
        const PixelRegion region = regionOf(*card, devicePixelRatioF());
        all.insert(all.end(), region.begin(), region.end());
    }
    windows.blurBehind(winId(), all);
}

// Parts

std::unique_ptr<AnnotationCanvasPort> AnnotationWindowView::makeCanvasView(AnnotationCanvas& made)
{
    auto view = std::make_unique<AnnotationCanvasView>(made, fonts);
    view->setFocusPolicy(Qt::StrongFocus);
    view->setLowerCornerRadius(canvasCardRadius);
    canvas = view.get();
    canvasCard->setCanvas(canvas);
    orderTabs();
    return view;
}

void AnnotationWindowView::orderTabs()
{
    QWidget* last = canvas;
    const auto follow = [&last](QWidget* next) {
        setTabOrder(last, next);
        last = next;
    };
    for (QWidget* button : toolRail->buttons())
        follow(button);
    for (QWidget* button : swatchCard->buttons())
        follow(button);
    follow(canvasCard->settings());
    follow(strip);
}

void AnnotationWindowView::lookAgain()
{
    canvasCard->lookAgain();
    toolRail->lookAgain();
    swatchCard->lookAgain(logic.swatchCardAlpha());
}

void AnnotationWindowView::placeParts()
{
    const auto layout = EditorLayout::of(size(), toolRail->sizeHint(), swatchCard->sizeHint());
    canvasCard->setGeometry(layout.canvasCard);
    toolRail->setGeometry(layout.toolRail);
    swatchCard->setGeometry(layout.swatchCard);
    strip->setGeometry(layout.strip);
    curtain->setGeometry(rect());
}

// Events

void AnnotationWindowView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    backdrop.paint(painter, event->rect());
    painter.fillRect(event->rect(), qt::qtColor(editorDim));
}

void AnnotationWindowView::resizeEvent(QResizeEvent*)
{
    backdrop.setSize(size());
    placeParts();
    backdropChanged();
    logic.scaleChanged(devicePixelRatioF());
}

// A window that is not there has nothing to confirm.
void AnnotationWindowView::closeEvent(QCloseEvent* event)
{
    if (!isVisible())
        return;
    event->ignore();
    logic.closeRequested();
}

// What the focused control has no use for.
void AnnotationWindowView::keyPressEvent(QKeyEvent* event)
{
    logic.handleKeyDown(keyPressOf(*event));
}

bool AnnotationWindowView::event(QEvent* event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::WindowActivate)
        activeChanged(true);
    else if (event->type() == QEvent::WindowDeactivate)
        activeChanged(false);
    else if (event->type() == QEvent::WindowStateChange)
        stateChanged(static_cast<const QWindowStateChangeEvent&>(*event).oldState());
    return handled;
}

// Who brings it back may not ask us, and the desktop is another by then.
void AnnotationWindowView::stateChanged(Qt::WindowStates before)
{
    if (isMinimized() && !(before & Qt::WindowMinimized))
        forgetBackdrop();
    logic.minimizedChanged(isMinimized());
}

void AnnotationWindowView::activeChanged(bool isActive)
{
    if (isActive)
        return logic.becameKey();
    logic.gestureLost();
    // Some window managers now put others in front of it; it stays above, but not above our own.
    if (isVisible() && !logic.isClosing() && !QApplication::activeWindow())
        raise();
}

bool AnnotationWindowView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == windowHandle() && isInput(event->type()))
        logic.eventArrived(isActiveWindow());
    return QWidget::eventFilter(watched, event);
}

} // namespace tallowbay::views
