#pragma once

#include "editor/window/AnnotationWindow.h"
#include "views/ui/GlassCard.h"
#include "views/ui/HoverButton.h"

#include <QGraphicsOpacityEffect>
#include <QVariantAnimation>

#include <chrono>
#include <vector>

namespace tallowbay::views {

// A colour to draw with. The chosen one has a white ring.
class SwatchButton final : public HoverButton {
public:
    SwatchButton(const QString& name, const QColor&, QWidget* parent);

protected:
    void paintContent(QPainter&) override;

private:
    const QColor color;
};

// The card with the colours, which fades away where there is nothing to colour.
class SwatchCardView final : public GlassCard {
public:
    SwatchCardView(AnnotationWindow&, const Backdrop&, QWidget* parent);

    void lookAgain(double alpha);
    void animateAlpha(double to, std::chrono::milliseconds);

    const std::vector<HoverButton*>& buttons() const { return swatches; }

protected:
    void hideEvent(QHideEvent*) override;

private:
    void setAlpha(double);

    AnnotationWindow& logic;
    std::vector<HoverButton*> swatches;
    QGraphicsOpacityEffect* const opacity;
    QVariantAnimation fade;
};

} // namespace tallowbay::views
