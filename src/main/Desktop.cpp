#include "main/Desktop.h"

#include "main/X11Desktop.h"

namespace tallowbay {

std::unique_ptr<Desktop> makeDesktop(DesktopKind kind)
{
    switch (kind) {
    case DesktopKind::x11:
        break;
    }
    return std::make_unique<X11Desktop>();
}

} // namespace tallowbay
