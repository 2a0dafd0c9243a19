#include "views/ui/ToastView.h"

namespace tallowbay::views {

void ToastView::orderFront()
{
    widget.show();
    widget.raise();
}

} // namespace tallowbay::views
