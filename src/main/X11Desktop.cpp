#include "main/X11Desktop.h"

#include "platform/qt/X11Connection.h"
#include "platform/x11/Xwayland.h"

#include <QCoreApplication>

namespace tallowbay {

namespace {

std::unique_ptr<x11::X11Session> openSession(Dispatch& dispatch)
{
    // Without its display there is nothing left to do for the program.
    auto created = x11::X11Session::create(dispatch, [] { QCoreApplication::exit(1); });
    if (!created.session)
        throw DisplayUnusable(created.problem);
    return std::move(created.session);
}

// The windows are Qt's; what is asked for them must keep its order with Qt's own requests.
xcb_connection_t& toolkitConnection()
{
    if (auto* connection = qt::x11Connection())
        return *connection;
    throw DisplayUnusable("the windows are not those of an X server");
}

} // namespace

X11Desktop::X11Desktop()
    : session(openSession(shared.dispatch))
    , pasteboard(*session, shared.dispatch)
    , keyboard(*session)
    , keyTap(*session, keyboard)
    , keyPoster(*session, keyboard)
    , hotkeys(*session, shared.dispatch)
    , permissions(*session, x11::isWaylandSession(session->connection()))
    , windowSystem(toolkitConnection())
    , embeddingTray(toolkitConnection())
{
    const auto own = x11::resourceNumbersOf(toolkitConnection());
    pasteboard.answerOwnToolkit(own.base, own.mask);
    pasteboard.offerTransfers(shared.fileTransfer);
}

Platform X11Desktop::platform()
{
    return {
        .dispatch = shared.dispatch,
        .clock = shared.clock,
        .calendar = shared.calendar,
        .console = shared.console,
        .fileSystem = shared.fileSystem,
        .fileEvents = shared.fileEvents,
        .folderEvents = shared.folderEvents,
        .processes = shared.processes,
        .resources = shared.resources,
        .tools = shared.tools,
        .imageCodec = shared.imageCodec,
        .offscreenGraphics = shared.offscreenGraphics,
        .textRecognizer = shared.textRecognizer,
        .defaults = shared.defaults,
        .desktop = shared.desktopSettings,
        .pasteboard = pasteboard,
        .keyTap = keyTap,
        .keyPoster = keyPoster,
        .hotkeys = hotkeys,
        .permissions = permissions,
        .statusBar = statusBar,
        .alerts = shared.alerts,
        .updater = shared.updater,
        .application = shared.application,
        .screens = shared.screens,
        .textMeasurer = shared.textMeasurer,
        .windowSystem = windowSystem,
    };
}

} // namespace tallowbay
