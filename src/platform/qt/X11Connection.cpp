#include "platform/qt/X11Connection.h"

#include <QGuiApplication>

namespace tallowbay::qt {

xcb_connection_t* x11Connection()
{
    using X11 = QNativeInterface::QX11Application;
    const auto* application = qGuiApp ? qGuiApp->nativeInterface<X11>() : nullptr;
    return application ? application->connection() : nullptr;
}

} // namespace tallowbay::qt
