#include "views/editor/SwatchCardView.h"

#include "editor/AnnotationConstants.h"
#include "editor/window/EditorLook.h"
#include "platform/qt/graphics/QtColor.h"

#include <QHBoxLayout>
#include <QPainter>

namespace tallowbay::views {

SwatchButton::SwatchButton(const QString& name, const QColor& color, QWidget* parent)
    : HoverButton(name, {swatchSide / 2, swatchHoverAlpha}, parent)
    , color(color)
{
    setFixedSize(static_cast<int>(swatchSide), static_cast<int>(swatchSide));
    setCheckable(true);
    setLitFromAbove();
    setToolTip(name);
}

void SwatchButton::paintContent(QPainter& painter)
{
    const auto disc = [&](double side, const QColor& fill) {
        painter.setBrush(fill);
        painter.drawEllipse(QRectF(rect()).center(), side / 2, side / 2);
    };
    painter.setPen(Qt::NoPen);
    disc(swatchSide, color);
    if (!isChecked())
        return;
    disc(swatchRingSide, Qt::white);
    disc(swatchCoreSide, color);
}

SwatchCardView::SwatchCardView(AnnotationWindow& logic, const Backdrop& backdrop, QWidget* parent)
    : GlassCard(backdrop, swatchCardRadius, parent)
    , logic(logic)
    , opacity(new QGraphicsOpacityEffect(this))
{
    setObjectName(QStringLiteral("swatchCard"));
    setAccessibleName(QStringLiteral("Colours"));
    setOnCard();
    constexpr int inset = static_cast<int>(swatchInset);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(inset, inset, inset, inset);
    row->setSpacing(static_cast<int>(swatchSpacing));
    for (std::size_t tag = 0; tag < swatchColorValues.size(); ++tag) {
        auto* const swatch = new SwatchButton(
            QString::fromStdString(swatchLabel(tag)), qt::qtColor(swatchColorValues.at(tag)), this);
        connect(swatch, &QAbstractButton::clicked, this, [this, tag] {
            this->logic.swatchSelected(tag);
        });
        row->addWidget(swatch);
        swatches.push_back(swatch);
    }
    setGraphicsEffect(opacity);
    connect(&fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        setAlpha(value.toDouble());
    });
    adjustSize();
    lookAgain(logic.swatchCardAlpha());
}

void SwatchCardView::lookAgain(double alpha)
{
    for (std::size_t tag = 0; tag < swatches.size(); ++tag) {
        swatches[tag]->setChecked(tag == logic.selectedSwatch());
        swatches[tag]->update();
    }
    const bool comesToIt =
        fade.state() == QVariantAnimation::Running && fade.endValue().toDouble() == alpha;
    if (!comesToIt) {
        fade.stop();
        setAlpha(alpha);
    }
}

void SwatchCardView::animateAlpha(double to, std::chrono::milliseconds duration)
{
    fade.stop();
    if (!window()->isVisible())
        return setAlpha(to);
    fade.setStartValue(opacity->opacity());
    fade.setEndValue(to);
    fade.setDuration(static_cast<int>(duration.count()));
    fade.start();
}

// What is not seen takes neither clicks nor the keyboard.
void SwatchCardView::setAlpha(double alpha)
{
    opacity->setOpacity(alpha);
    opacity->setEnabled(alpha < 1);
    setVisible(alpha > 0);
}

void SwatchCardView::hideEvent(QHideEvent*)
{
    if (!window()->isVisible() && fade.state() == QVariantAnimation::Running) {
        fade.stop();
        setAlpha(fade.endValue().toDouble());
    }
}

} // namespace tallowbay::views
