#include "views/editor/strip/StripView.h"

#include "editor/window/EditorLook.h"
#include "platform/qt/graphics/QtColor.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tallowbay::views {

namespace {

constexpr double pointsPerWheelStep = 224; // a cell and what is between
constexpr int scrollerHeight = 14;

double widthOf(const ThumbnailStrip::Slot& slot)
{
    return slot ? cellSize.width : dividerSize.width;
}

void tellThatItGoes(CellView& cell)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&cell, QAccessible::ObjectDestroyed);
    QAccessible::updateAccessibility(&event);
}

} // namespace

class StripView::Divider final : public QWidget {
public:
    explicit Divider(QWidget* parent)
        : QWidget(parent)
    {
        setObjectName(QStringLiteral("divider"));
        setFixedSize(qRound(dividerSize.width), qRound(dividerSize.height));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(qt::qtColor(dividerColor));
        painter.drawRoundedRect(rect(), dividerRadius, dividerRadius);
    }
};

StripView::StripView(AnnotationWindow& logic, QWidget* parent)
    : QWidget(parent)
    , logic(logic)
    , content(new QWidget(this))
    , scroller(new OverlayScroller(this))
    , scrolling(*this, *content, *scroller, [this] { reportVisible(); })
{
    setObjectName(QStringLiteral("strip"));
    setAccessibleName(QStringLiteral("Screenshots"));
    setFocusPolicy(Qt::TabFocus);
    content->setObjectName(QStringLiteral("stripContent"));
}

// What is shown

void StripView::stripChanged()
{
    const auto& slots = logic.slots();
    const std::size_t cells = logic.count();
    showCells(cells);
    showDividers(slots.size() - cells);
    arrange();
    scrolling.contentChanged();
    updateFocusRings();
    content->update();
    for (CellView* cell : shownCells)
        cell->tellAssistivePrograms(hasFocus());
}

void StripView::showCells(std::size_t count)
{
    for (; shownCells.size() > count; shownCells.pop_back()) {
        tellThatItGoes(*shownCells.back());
        delete shownCells.back();
    }
    while (shownCells.size() < count) {
        shownCells.push_back(new CellView(logic, content));
        shownCells.back()->show();
    }
    cellOfIndex.assign(count, nullptr);
}

void StripView::showDividers(std::size_t count)
{
    for (; dividers.size() > count; dividers.pop_back())
        delete dividers.back();
    while (dividers.size() < count) {
        dividers.push_back(new Divider(content));
        dividers.back()->show();
    }
}

void StripView::arrange()
{
    auto cell = shownCells.begin();
    auto divider = dividers.begin();
    double x = stripInsetSide;
    for (const auto& slot : logic.slots()) {
        QWidget* const widget = slot ? *cell : *divider;
        widget->move(qRound(x), qRound(stripInsetTop));
        if (slot) {
            (*cell)->setIndex(*slot);
            cellOfIndex.at(*slot) = *cell++;
        } else {
            ++divider;
        }
        x += widthOf(slot) + stripSpacing;
    }
    const double whole = logic.slots().empty() ? 0 : x - stripSpacing + stripInsetSide;
    content->resize(qRound(whole), height());
}

CellView* StripView::cellOf(std::size_t index) const
{
    return index < cellOfIndex.size() ? cellOfIndex[index] : nullptr;
}

void StripView::cellChanged(std::size_t index)
{
    CellView* const cell = cellOf(index);
    if (!cell)
        return;
    cell->update();
    updateFocusRing(*cell);
    cell->tellAssistivePrograms(hasFocus());
}

void StripView::updateFocusRings()
{
    for (CellView* cell : shownCells)
        updateFocusRing(*cell);
}

void StripView::updateFocusRing(CellView& cell)
{
    cell.setFocusRing(hasFocus() && cell.index() == logic.selectedIndex());
}

// Where it is scrolled to

void StripView::scrollToVisible(std::size_t index)
{
    const CellView* const cell = cellOf(index);
    if (!cell)
        return;
    scrolling.showSpan(cell->x() - stripInsetSide, cell->x() + cell->width() + stripInsetSide);
}

void StripView::reportVisible()
{
    const auto& slots = logic.slots();
    if (slots.empty() || width() <= 0)
        return;
    const double offset = scrolling.offset();
    double x = stripInsetSide;
    std::size_t first = slots.size();
    std::size_t last = 0;
    for (std::size_t place = 0; place < slots.size(); ++place) {
        const double end = x + widthOf(slots[place]);
        if (end > offset && x < offset + width()) {
            first = std::min(first, place);
            last = place;
        }
        x = end + stripSpacing;
    }
    if (first <= last)
        logic.visibleSlotsChanged(first, last);
}

void StripView::resizeEvent(QResizeEvent*)
{
    content->resize(content->width(), height());
    scroller->setGeometry(0, height() - scrollerHeight, width(), scrollerHeight);
    scroller->raise();
    scrolling.scrollTo(scrolling.offset());
    scrollToSelected();
}

void StripView::showEvent(QShowEvent*)
{
    scrollToSelected();
}

void StripView::scrollToSelected()
{
    if (logic.count() > 0)
        scrollToVisible(logic.selectedIndex());
}

void StripView::hideEvent(QHideEvent*)
{
    scrolling.finish();
    gestureLost();
}

bool StripView::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate)
        gestureLost();
    return QWidget::event(event);
}

void StripView::gestureLost()
{
    pressed = dragging = false;
    scrolling.snapBack();
}

// Mouse and touchpad

// Either way of the wheel scrolls. What a touchpad sends in small pieces is smooth by itself.
void StripView::wheelEvent(QWheelEvent* event)
{
    constexpr int wheelStep = 120;
    const QPoint turned = event->angleDelta();
    const int turn = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    const double way = -turn * pointsPerWheelStep / wheelStep;
    if (std::abs(turn) >= wheelStep)
        scrolling.turn(way);
    else
        scrolling.touchpadMoved(way);
    if (event->phase() == Qt::ScrollEnd)
        scrolling.snapBack();
    event->accept();
}

void StripView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressed = true;
    dragging = false;
    takePress(event->position().toPoint());
    scrolling.grab(pressedAt.x());
}

void StripView::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton)) // let go where nobody told us
        gestureLost();
    if (!pressed)
        return;
    const double x = event->position().x();
    dragging = dragging || std::abs(x - pressedAt.x()) >= QApplication::startDragDistance();
    if (dragging)
        scrolling.dragTo(x);
}

void StripView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !std::exchange(pressed, false))
        return;
    if (std::exchange(dragging, false))
        return scrolling.letGo();
    click();
}

// It is the screenshot under the press that is meant, wherever it is now, or whether it still is.
void StripView::takePress(const QPoint& point)
{
    pressedAt = point;
    pressedCell.reset();
    for (const CellView* cell : shownCells) {
        const QPoint inCell = cell->mapFrom(this, point);
        if (!cell->rect().contains(inCell))
            continue;
        pressedCell = cell->id();
        checkboxPressed = CellView::checkboxRect().contains(inCell);
    }
}

void StripView::click()
{
    const auto isMeant = [this](const CellView* cell) { return cell->id() == pressedCell; };
    const auto found = std::ranges::find_if(shownCells, isMeant);
    if (found == shownCells.end())
        return;
    if (checkboxPressed)
        (*found)->toggle();
    else
        (*found)->press();
}

// Keyboard

void StripView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space || logic.count() == 0)
        return event->ignore();
    if (!event->isAutoRepeat())
        logic.checkboxToggled(logic.selectedIndex());
}

void StripView::focusInEvent(QFocusEvent*)
{
    updateFocusRings();
    scrollToSelected();
}

void StripView::focusOutEvent(QFocusEvent*)
{
    updateFocusRings();
}

} // namespace tallowbay::views
