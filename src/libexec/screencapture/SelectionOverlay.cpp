#include "libexec/screencapture/SelectionOverlay.h"

#include <QCursor>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tallowbay::screencapture {

using namespace std::chrono_literals;

namespace {

constexpr auto grabInterval = 25ms;
constexpr auto longestWaitForRelease = 1s;
constexpr QColor shade(0, 0, 0, 115);
constexpr QColor lineColor(255, 255, 255);
constexpr QColor rimColor(0, 0, 0, 90);
constexpr QColor labelColor(24, 25, 30, 230);

int pixels(double points, double scale)
{
    return std::max(1, qRound(points * scale));
}

QImage dimmedCopy(const QImage& image)
{
    QImage copy = image.copy();
    QPainter(&copy).fillRect(copy.rect(), shade);
    return copy;
}

std::vector<QRect> areas(const FrozenDesktop& desktop)
{
    std::vector<QRect> areas;
    for (const FrozenDesktop::Screen& screen : desktop.screens)
        areas.push_back(screen.area);
    return areas;
}

std::optional<RegionSelection::Key> selectionKey(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return RegionSelection::Key::Left;
    case Qt::Key_Right:
        return RegionSelection::Key::Right;
    case Qt::Key_Up:
        return RegionSelection::Key::Up;
    case Qt::Key_Down:
        return RegionSelection::Key::Down;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return RegionSelection::Key::Confirm;
    case Qt::Key_Escape:
        return RegionSelection::Key::Cancel;
    default:
        return std::nullopt;
    }
}

// The frame lies around the region, so that no pixel of it is covered.
QRect around(const QRect& region, int width)
{
    return region.adjusted(-width, -width, width, width);
}

// Dark lines with a light rim show on everything; the centre stays open, so that the pixel to be
// picked can be seen.
QCursor crosshair(double scale)
{
    const int line = pixels(1, scale);
    const int length = pixels(9, scale);
    const int middle = line + length + pixels(4, scale);
    const int side = 2 * middle + line;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    const int far = side - line - length;
    const QRect arms[] = {
        {line, middle, length, line},
        {far, middle, length, line},
        {middle, line, line, length},
        {middle, far, line, length}};
    for (const QRect& arm : arms)
        painter.fillRect(arm.adjusted(-line, -line, line, line), QColor(255, 255, 255));
    for (const QRect& arm : arms)
        painter.fillRect(arm, QColor(20, 20, 24));
    painter.end();
    return QCursor(pixmap, middle + line / 2, middle + line / 2);
}

} // namespace

SelectionOverlay::SelectionOverlay(const FrozenDesktop& desktop)
    : desktop(desktop)
    , dimmed(dimmedCopy(desktop.image))
    , selection(areas(desktop), QCursor::pos())
{
    setFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
    setTitle("screencapture");
    setGeometry(desktop.area);
    showCrosshair();
}

std::optional<QRect> SelectionOverlay::run()
{
    const auto cancelled = [this] { loop.exit(1); };
    QObject::connect(qApp, &QGuiApplication::screenAdded, this, cancelled);
    QObject::connect(qApp, &QGuiApplication::screenRemoved, this, cancelled);
    QObject::connect(&grabs, &QTimer::timeout, this, [this] { grabInput(); });
    show();
    grabs.start(grabInterval);
    const bool completed = loop.exec() == 0;
    return completed && selection.confirmed() ? selection.region() : std::nullopt;
}

// Another program may hold the keyboard or the mouse: the hotkey that started us is down until the
// user lets go of it, and an open menu holds both.
void SelectionOverlay::grabInput()
{
    hasMouse = hasMouse || setMouseGrabEnabled(true);
    hasKeyboard = hasKeyboard || setKeyboardGrabEnabled(true);
    if (hasMouse && hasKeyboard)
        grabs.stop();
}

void SelectionOverlay::showCrosshair()
{
    const double scale = desktop.screenAt(selection.pointer()).scale;
    if (std::exchange(crosshairScale, scale) != scale)
        setCursor(crosshair(scale));
}

void SelectionOverlay::keyPressEvent(QKeyEvent* event)
{
    const auto key = selectionKey(event->key());
    const bool isArrow = key && *key < RegionSelection::Key::Confirm;
    if (!key || (event->isAutoRepeat() && !isArrow))
        return;
    const bool coarse = event->modifiers().testFlag(Qt::ShiftModifier);
    selection.keyPressed(
        *key, coarse ? RegionSelection::Step::Coarse : RegionSelection::Step::Fine);
    if (isArrow)
        QCursor::setPos(selection.pointer());
    selectionChanged();
}

void SelectionOverlay::keyReleaseEvent(QKeyEvent* event)
{
    if (!event->isAutoRepeat() && ended())
        loop.exit();
}

void SelectionOverlay::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        selection.primaryPressed(desktopPoint(*event));
    else if (event->button() == Qt::RightButton)
        selection.secondaryPressed();
    selectionChanged();
}

void SelectionOverlay::mouseMoveEvent(QMouseEvent* event)
{
    selection.pointerMoved(desktopPoint(*event));
    selectionChanged();
}

void SelectionOverlay::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        selection.primaryReleased(desktopPoint(*event));
    selectionChanged();
    if (event->buttons() == Qt::NoButton && ended())
        loop.exit();
}

QPoint SelectionOverlay::desktopPoint(const QMouseEvent& event) const
{
    return event.position().toPoint() + desktop.area.topLeft();
}

void SelectionOverlay::selectionChanged()
{
    if (ended())
        QTimer::singleShot(longestWaitForRelease, &loop, [this] { loop.exit(); });
    showCrosshair();
    const Chrome now = chrome();
    update(QRegion(shown.region).xored(now.region) + covered(shown) + covered(now));
    shown = now;
}

SelectionOverlay::Chrome SelectionOverlay::chrome() const
{
    const auto region = selection.region();
    if (!region)
        return {};
    const FrozenDesktop::Screen& screen = desktop.screenAt(selection.pointer());
    const QFontMetrics metrics(labelFont(screen.scale));
    const QString text = QString("%1 × %2").arg(region->width()).arg(region->height());
    // Figures differ in width; the label shall not tremble while they change.
    const QString widest = QString("%1 × %2")
                               .arg(QString(QString::number(region->width()).size(), '0'))
                               .arg(QString(QString::number(region->height()).size(), '0'));
    const QSize size(
        metrics.horizontalAdvance(widest) + pixels(20, screen.scale),
        metrics.height() + pixels(8, screen.scale));
    const QRect label = labelPlace(*region, size, screen.area, pixels(8, screen.scale));
    const QPoint origin = desktop.area.topLeft();
    return {region->translated(-origin), label.translated(-origin), text, pixels(1, screen.scale)};
}

QRegion SelectionOverlay::covered(const Chrome& chrome) const
{
    if (chrome.region.isNull())
        return {};
    return QRegion(around(chrome.region, 2 * chrome.line)) - chrome.region + chrome.label;
}

void SelectionOverlay::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setClipRegion(event->region());
    const QRect bounds = event->region().boundingRect();
    painter.drawImage(bounds, dimmed, bounds);
    if (shown.region.isNull())
        return;
    paintRegion(painter, shown);
    paintLabel(painter, shown);
}

void SelectionOverlay::paintRegion(QPainter& painter, const Chrome& chrome) const
{
    const QRect line = around(chrome.region, chrome.line);
    for (const QRect& side : QRegion(around(line, chrome.line)) - line)
        painter.fillRect(side, rimColor);
    painter.fillRect(line, lineColor);
    painter.drawImage(chrome.region, desktop.image, chrome.region);
}

void SelectionOverlay::paintLabel(QPainter& painter, const Chrome& chrome) const
{
    const double scale = desktop.screenAt(selection.pointer()).scale;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(labelColor);
    painter.drawRoundedRect(chrome.label, 6 * scale, 6 * scale);
    painter.setFont(labelFont(scale));
    painter.setPen(Qt::white);
    painter.drawText(chrome.label, Qt::AlignCenter, chrome.labelText);
}

QFont SelectionOverlay::labelFont(double scale) const
{
    QFont font("Inter");
    font.setPixelSize(pixels(13, scale));
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace tallowbay::screencapture
