#include "views/editor/strip/CellView.h"

#include "editor/window/EditorLook.h"
#include "platform/qt/graphics/BitmapImage.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/graphics/QtColor.h"
#include "views/ui/RoundedPath.h"
#include "views/ui/Symbol.h"

#include <QAccessible>
#include <QPainter>

namespace tallowbay::views {

namespace {

constexpr double captionGap = 8; // to the badge
constexpr double badgePadding = 5;
constexpr double focusRingWidth = 2;
constexpr QColor cellFocusColor(190, 220, 255);

QRectF headerRect()
{
    return {0, 0, cellSize.width, cellHeaderHeight};
}

// In the middle of the header's height.
QRectF inHeader(double left, double side)
{
    return {left, (cellHeaderHeight - side) / 2, side, side};
}

// A circle, wider only where the number needs it.
QRectF badgeRect(const QString& number)
{
    const double text = QFontMetricsF(qt::interfaceFont(badgeFont)).horizontalAdvance(number);
    QRectF badge = inHeader(checkboxLeading + checkboxSide + badgeGap, badgeSide);
    badge.setWidth(std::max(badgeSide, text + 2 * badgePadding));
    return badge;
}

QRectF wellRect()
{
    return {
        imageWellInset, cellHeaderHeight + imageWellGap, imageWellSize.width, imageWellSize.height};
}

QRectF centered(const QSizeF& size, const QPointF& middle)
{
    return {middle - QPointF(size.width() / 2, size.height() / 2), size};
}

QString qtText(const std::string& text)
{
    return QString::fromStdString(text);
}

void tell(QWidget& widget, QAccessible::Event what)
{
    QAccessibleEvent event(&widget, what);
    QAccessible::updateAccessibility(&event);
}

} // namespace

CellView::CellView(AnnotationWindow& logic, QWidget* parent)
    : QWidget(parent)
    , logic(logic)
{
    setObjectName(QStringLiteral("cell"));
    setCursor(Qt::PointingHandCursor);
    setFixedSize(qRound(cellSize.width), qRound(cellSize.height));
}

void CellView::setIndex(std::size_t index)
{
    shownIndex = index;
    update();
}

void CellView::setFocusRing(bool on)
{
    if (std::exchange(focusRing, on) != on)
        update();
}

void CellView::tellAssistivePrograms(bool hasKeyboard)
{
    if (!QAccessible::isActive())
        return;
    const ThumbnailCell now = cell();
    const bool isNew = !told;
    const Told before = told.value_or(Told{now.name, false, now.checked});
    told = Told{now.name, now.selected, now.checked};
    if (isNew)
        tell(*this, QAccessible::ObjectCreated);
    if (now.name != before.name)
        tell(*this, QAccessible::NameChanged);
    if (now.name != before.name || now.checked != before.checked)
        tell(*this, QAccessible::DescriptionChanged);
    QAccessible::State changed;
    changed.checked = now.checked != before.checked;
    changed.selected = now.selected != before.selected;
    if (changed.checked || changed.selected) {
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
    if (!now.selected || (before.selected && now.name == before.name))
        return;
    tell(*this, QAccessible::Selection);
    if (hasKeyboard)
        tell(*this, QAccessible::Focus);
}

QRect CellView::checkboxRect()
{
    return inHeader(checkboxLeading, checkboxSide).toRect();
}

void CellView::paintEvent(QPaintEvent*)
{
    const ThumbnailCell shown = cell();
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.fillPath(roundedPath(rect(), cellRadius), qt::qtColor(shown.background));
    paintHeader(painter, shown);
    paintImage(painter, shown);
    painter.setBrush(Qt::NoBrush);
    const auto border = [&](double inset, double width, const QColor& color) {
        painter.setPen(QPen(color, width));
        const double middle = inset + width / 2;
        painter.drawPath(roundedPath(
            QRectF(rect()).adjusted(middle, middle, -middle, -middle), cellRadius - middle));
    };
    if (shown.selected)
        border(0, selectedCellBorder, qt::qtColor(systemBlue));
    if (focusRing)
        border(selectedCellBorder, focusRingWidth, cellFocusColor);
}

void CellView::paintHeader(QPainter& painter, const ThumbnailCell& shown) const
{
    painter.fillPath(
        cardTopPath(rect(), cellRadius, cellHeaderHeight), qt::qtColor(shown.headerColor));
    paintCheckbox(painter, shown);
    const QString number = qtText(shown.badge);
    const QRectF badge = badgeRect(number);
    painter.setPen(Qt::NoPen);
    painter.setBrush(qt::qtColor(badgeBackground));
    painter.drawRoundedRect(badge, badgeSide / 2, badgeSide / 2);
    painter.setFont(qt::interfaceFont(badgeFont));
    painter.setPen(qt::qtColor(badgeColor));
    painter.drawText(badge, Qt::AlignCenter | Qt::TextDontClip, number);
    const QFont font = qt::interfaceFont(captionFont);
    painter.setFont(font);
    painter.setPen(qt::qtColor(captionColor));
    const QRectF line = headerRect().adjusted(badge.right() + captionGap, 0, -captionTrailing, 0);
    painter.drawText(
        line, Qt::AlignRight | Qt::AlignVCenter,
        QFontMetricsF(font).elidedText(qtText(shown.caption), Qt::ElideRight, line.width()));
}

void CellView::paintCheckbox(QPainter& painter, const ThumbnailCell& shown) const
{
    const QPointF middle = inHeader(checkboxLeading, checkboxSide).center();
    if (shown.checked) {
        const QRectF ground = centered({checkboxGroundSide, checkboxGroundSide}, middle);
        painter.fillPath(roundedPath(ground, checkboxGroundRadius), Qt::white);
    }
    const QPixmap mark = symbol(
        qtText(shown.checkboxSymbol()), checkboxSymbolSize, qt::qtColor(shown.checkboxTint()),
        devicePixelRatioF());
    painter.drawPixmap(centered(mark.deviceIndependentSize(), middle).topLeft(), mark);
}

void CellView::paintImage(QPainter& painter, const ThumbnailCell& shown) const
{
    const QRectF well = wellRect();
    const QPainterPath shape = roundedPath(well, imageWellRadius);
    painter.fillPath(shape, Qt::black);
    if (!shown.thumbnail)
        return;
    const QImage image = qt::imageOver(*shown.thumbnail);
    const QSizeF fitting = QSizeF(image.size()).scaled(well.size(), Qt::KeepAspectRatio);
    const QRectF place = centered(fitting, well.center());
    painter.setClipPath(shape);
    painter.drawImage(place, image);
    painter.setClipping(false);
}

void CellView::enterEvent(QEnterEvent*)
{
    logic.mouseEnteredCell(shownIndex);
}

void CellView::leaveEvent(QEvent*)
{
    logic.mouseExitedCell(shownIndex);
}

} // namespace tallowbay::views
