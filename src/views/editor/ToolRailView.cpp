#include "views/editor/ToolRailView.h"

#include "editor/window/EditorLook.h"
#include "views/editor/ShowButton.h"

#include <QVBoxLayout>

namespace tallowbay::views {

ToolRailView::ToolRailView(AnnotationWindow& logic, const Backdrop& backdrop, QWidget* parent)
    : GlassCard(backdrop, toolRailRadius, parent)
    , logic(logic)
    , opacity(new QGraphicsOpacityEffect(this))
{
    setObjectName(QStringLiteral("toolRail"));
    setAccessibleName(QStringLiteral("Tools"));
    constexpr int inset = static_cast<int>(toolRailInset);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(inset, inset, inset, inset);
    column->setSpacing(static_cast<int>(toolRailSpacing));
    for (const RailButton& tool : logic.tools()) {
        HoverButton* const button = addButton(tool);
        button->setCheckable(true);
        connect(button, &QAbstractButton::clicked, this, [this, tag = tool.tag] {
            this->logic.toolSelected(tag);
        });
    }
    connect(addButton(undoButton()), &QAbstractButton::clicked, this, [this] {
        this->logic.undoAnnotation();
    });
    connect(addButton(redoButton()), &QAbstractButton::clicked, this, [this] {
        this->logic.redoAnnotation();
    });
    setGraphicsEffect(opacity);
    adjustSize();
    lookAgain();
}

HoverButton* ToolRailView::addButton(const RailButton& look)
{
    constexpr int side = static_cast<int>(toolButtonSide);
    auto* const button = new HoverButton(
        QString::fromStdString(look.label), {toolButtonSide / 2, toolHoverAlpha}, this);
    button->setFixedSize(side, side);
    showButton(*button, look, toolSymbolSize);
    layout()->addWidget(button);
    railButtons.push_back(button);
    return button;
}

void ToolRailView::lookAgain()
{
    std::size_t place = 0;
    for (const RailButton& tool : logic.tools())
        showButton(*railButtons.at(place++), tool, toolSymbolSize);
    opacity->setOpacity(logic.toolRailAlpha());
    opacity->setEnabled(logic.toolRailAlpha() < 1); // else it would cost at every repaint
}

} // namespace tallowbay::views
