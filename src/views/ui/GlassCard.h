#pragma once

#include "views/ui/Backdrop.h"

#include <QWidget>

namespace tallowbay::views {

// A card of dark glass: what lies behind the window is seen through it, blurred and tinted.
// Its rim is a widget of its own (GlassBorderOverlay), which lies over what the card holds.
class GlassCard : public QWidget {
public:
    // The backdrop outlives it.
    GlassCard(const Backdrop&, double cornerRadius, QWidget* parent);

    // Lies on another card, and so is darker, to be told from it.
    void setOnCard() { onCard = true; }

    double radius() const { return cornerRadius; }

    // The backdrop has looked again, or has forgotten.
    void backdropChanged();

protected:
    void paintEvent(QPaintEvent*) override;
    void moveEvent(QMoveEvent*) override { backdropChanged(); }
    void resizeEvent(QResizeEvent*) override;

private:
    QPixmap drawFace() const;

    const Backdrop& backdrop;
    const double cornerRadius;
    QWidget* const rim;
    bool onCard = false;
    QPixmap face; // drawn anew when the card or what is behind it changes
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
