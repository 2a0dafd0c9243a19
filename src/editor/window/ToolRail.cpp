#include "editor/window/ToolRail.h"

#include "editor/window/EditorLook.h"

#include <array>

namespace tallowbay {

std::vector<RailButton> toolButtons(AnnotationTool selected)
{
    std::vector<RailButton> buttons;
    for (const AnnotationTool tool : annotationTools) {
        RailButton button;
        button.symbol = railSymbol(tool);
        button.label = button.tooltip = railLabel(tool);
        button.tag = rawValue(tool);
        button.selected = tool == selected;
        button.tint = button.selected ? selectedToolTint : toolTint;
        if (button.selected)
            button.background = selectedToolBackground;
        buttons.push_back(std::move(button));
    }
    return buttons;
}

RailButton undoButton()
{
    return {"arrow.uturn.backward", "Undo", "Undo (Ctrl+Z)", 0, false, toolTint, {}};
}

RailButton redoButton()
{
    return {"arrow.uturn.forward", "Redo", "Redo (Ctrl+Shift+Z)", 0, false, toolTint, {}};
}

RailButton settingsButton()
{
    return {"gearshape", "Settings", "Settings", 0, false, settingsTint, {}};
}

std::string swatchLabel(std::size_t index)
{
    static constexpr std::array names{"Yellow", "Green", "Blue", "Red", "Orange"};
    return names.at(index);
}

} // namespace tallowbay
