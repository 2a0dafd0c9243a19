#pragma once

#include "views/ui/CustomBlurView.h"

#include <vector>

namespace tallowbay::views {

// A card of dark glass: what lies behind the window is seen through it, blurred and tinted.
// Its rim is a widget of its own (GlassBorderOverlay), which lies over what the card holds.
class GlassCard : public CustomBlurView {
public:
    // The backdrop outlives it.
    GlassCard(const Backdrop&, double cornerRadius, QWidget* parent);

    // Lies on another card, and so is darker, to be told from it.
    void setOnCard() { onCard = true; }

    double radius() const { return cornerRadius; }

protected:
    void drawOnGround(QPainter&) const override;
    void resizeEvent(QResizeEvent*) override;

private:
    std::vector<QRect> partsToCut() const;
    QPixmap shapeOf(const QRect& part) const;

    const double cornerRadius;
    QWidget* const rim;
    bool onCard = false;
};

// The gradient rim, without a card. Takes no clicks.
class GlassBorderOverlay final : public QWidget {
public:
    GlassBorderOverlay(double cornerRadius, QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    const double cornerRadius;
};

} // namespace tallowbay::views
