#pragma once

#include "editor/window/AnnotationWindow.h"
#include "views/ui/GlassCard.h"
#include "views/ui/HoverButton.h"

#include <QLabel>

namespace tallowbay::views {

// The card with the header and, below it, the canvas.
class CanvasCardView final : public GlassCard {
public:
    CanvasCardView(AnnotationWindow&, const Backdrop&, QWidget* parent);

    // The card becomes its parent.
    void setCanvas(QWidget*);

    void lookAgain();

    HoverButton* settings() const { return settingsControl; }

protected:
    void resizeEvent(QResizeEvent*) override;
    void paintEvent(QPaintEvent*) override;

private:
    void placeCanvas();
    void paintHeader(QPainter&) const;
    void paintPreview(QPainter&) const;
    QRect belowHeader() const;

    AnnotationWindow& logic;
    QLabel* const title;
    QLabel* const placeholder;
    HoverButton* const settingsControl;
    QWidget* canvas = nullptr;
};

} // namespace tallowbay::views
