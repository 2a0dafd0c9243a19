#pragma once

#include "editor/window/AnnotationWindow.h"
#include "views/ui/GlassCard.h"
#include "views/ui/HoverButton.h"

#include <QGraphicsOpacityEffect>

#include <vector>

namespace tallowbay::views {

// The rail with the tools, undo and redo.
class ToolRailView final : public GlassCard {
public:
    ToolRailView(AnnotationWindow&, const Backdrop&, QWidget* parent);

    void lookAgain();

    // All buttons, top to bottom: the order of the Tab key.
    const std::vector<HoverButton*>& buttons() const { return railButtons; }

private:
    HoverButton* addButton(const RailButton&);

    AnnotationWindow& logic;
    std::vector<HoverButton*> railButtons;
    QGraphicsOpacityEffect* const opacity;
};

} // namespace tallowbay::views
