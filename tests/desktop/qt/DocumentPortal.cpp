// The stand-in for the document portal, as a program on the session's bus.

#include "desktop/qt/StandInPortal.h"

#include <QCoreApplication>

int main(int argumentCount, char** arguments)
{
    using tallowbay::test::StandInPortal;
    const QCoreApplication application(argumentCount, arguments);
    auto bus = QDBusConnection::sessionBus();
    StandInPortal portal;
    const bool registered = bus.registerVirtualObject(StandInPortal::path, &portal)
        && bus.registerService(StandInPortal::service);
    return registered ? QCoreApplication::exec() : 1;
}
