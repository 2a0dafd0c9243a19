#include "views/editor/CanvasCardView.h"

#include "editor/AnnotationConstants.h"
#include "editor/ImagePlacement.h"
#include "editor/window/EditorLook.h"
#include "platform/qt/graphics/BitmapImage.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/graphics/QtColor.h"
#include "views/editor/ShowButton.h"
#include "views/ui/RoundedPath.h"

#include <QPainter>

namespace tallowbay::views {

namespace {

constexpr int headerHeight = static_cast<int>(canvasHeaderHeight);
constexpr int settingsSide = static_cast<int>(settingsButtonSide);
constexpr double settingsSymbolSize = 16;

QLabel* makeLabel(const std::string& text, const char* name, const Font& font, QWidget* parent)
{
    auto* const label = new QLabel(QString::fromStdString(text), parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setFont(qt::interfaceFont(font));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

void color(QLabel& label, const QColor& text)
{
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, text);
    label.setPalette(palette);
}

} // namespace

CanvasCardView::CanvasCardView(AnnotationWindow& logic, const Backdrop& backdrop, QWidget* parent)
    : GlassCard(backdrop, canvasCardRadius, parent)
    , logic(logic)
    , title(makeLabel(logic.title(), "title", titleFont, this))
    , placeholder(makeLabel(logic.placeholder(), "placeholder", placeholderFont, this))
    , settingsControl(new HoverButton(
          QString::fromStdString(settingsButton().label),
          {settingsButtonRadius, settingsHoverAlpha}, this))
{
    setObjectName(QStringLiteral("canvasCard"));
    settingsControl->setFixedSize(settingsSide, settingsSide);
    color(*placeholder, qt::qtColor(canvasPlaceholderColor));
    connect(
        settingsControl, &QAbstractButton::clicked, this, [this] { this->logic.toggleSettings(); });
    lookAgain();
}

void CanvasCardView::setCanvas(QWidget* view)
{
    canvas = view;
    canvas->setParent(this);
    canvas->stackUnder(placeholder);
    canvas->show();
    placeCanvas();
}

QRect CanvasCardView::belowHeader() const
{
    return rect().adjusted(0, headerHeight, 0, 0);
}

void CanvasCardView::placeCanvas()
{
    if (canvas)
        canvas->setGeometry(belowHeader());
}

void CanvasCardView::lookAgain()
{
    const auto header = logic.headerColor();
    color(*title, qt::qtColor(header ? titleColor : titleOnGlassColor));
    RailButton settings = settingsButton();
    if (!header)
        settings.tint = settingsOnGlassTint;
    showButton(*settingsControl, settings, settingsSymbolSize);
    settingsControl->setVisible(logic.settingsAvailable());
    placeholder->setVisible(!logic.placeholderHidden());
    update();
}

void CanvasCardView::resizeEvent(QResizeEvent* event)
{
    GlassCard::resizeEvent(event);
    title->setGeometry(0, 0, width(), headerHeight);
    settingsControl->move(
        width() - static_cast<int>(settingsTrailing) - settingsSide,
        (headerHeight - settingsSide) / 2);
    placeholder->setGeometry(belowHeader());
    placeCanvas();
}

void CanvasCardView::paintEvent(QPaintEvent* event)
{
    GlassCard::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paintHeader(painter);
    paintPreview(painter);
}

void CanvasCardView::paintHeader(QPainter& painter) const
{
    if (const auto header = logic.headerColor())
        painter.fillPath(cardTopPath(rect(), radius(), headerHeight), qt::qtColor(*header));
}

// Where the picture will be in a moment.
void CanvasCardView::paintPreview(QPainter& painter) const
{
    const Image preview = logic.canvasPreview();
    if (!preview)
        return;
    const QRect area = belowHeader();
    const auto place = ImagePlacement::fit(
        {double(area.width()), double(area.height())}, preview->size(), imageInset);
    if (!place.isUsable())
        return;
    const Rect shown = place.imageRect();
    const double top = area.bottom() + 1 - shown.maxY();
    painter.drawImage(
        QRectF(area.left() + shown.minX(), top, shown.size.width, shown.size.height),
        qt::imageOver(*preview));
}

} // namespace tallowbay::views
