#include "views/editor/ShowButton.h"

#include "platform/qt/graphics/QtColor.h"

namespace tallowbay::views {

void showButton(HoverButton& button, const RailButton& look, double symbolSize)
{
    button.setSymbol(QString::fromStdString(look.symbol), symbolSize);
    button.setTint(qt::qtColor(look.tint));
    button.setBackground(look.background ? qt::qtColor(*look.background) : Qt::transparent);
    button.setChecked(look.selected);
    button.setToolTip(QString::fromStdString(look.tooltip));
}

} // namespace tallowbay::views
