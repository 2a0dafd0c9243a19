#include "main/LinuxDesktop.h"

#include "platform/posix/Environment.h"
#include "platform/qt/Artwork.h"
#include "platform/qt/X11Queries.h"

#include <QCoreApplication>
#include <QDesktopServices>

#include <cstdlib>

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

qt::AppcastUpdater::Setup updaterSetup()
{
    return {TALLOWBAY_VERSION, TALLOWBAY_UPDATE_FEED, {}, [](const QUrl& link) {
                QDesktopServices::openUrl(link);
            }};
}

} // namespace

LinuxDesktop::LinuxDesktop()
    : session(openSession(dispatch))
    , resources(
          posix::runningProgramFolder(),
          [](const std::string& name) { return qt::Artwork().has(QString::fromStdString(name)); })
    , tools(posix::linuxToolPaths(resources))
    , defaults(posix::environmentConfigFolder())
    , screenshotSettings(dispatch, posix::SessionSurroundings::ofEnvironment())
    , desktopSettings(screenshotSettings.settings())
    , pasteboard(*session, dispatch)
    , keyboard(*session)
    , keyTap(*session, keyboard)
    , keyPoster(*session, keyboard)
    , hotkeys(*session, dispatch)
    , permissions(*session, std::getenv("WAYLAND_DISPLAY"))
    , updater(defaults, updaterSetup())
{
    const qt::ResourceNumbers own = qt::ownResourceNumbers();
    pasteboard.answerOwnToolkit(own.base, own.mask);
}

void LinuxDesktop::finishBackgroundWork()
{
    application.endAtNextSignal();
    processes.endChildren(std::chrono::seconds(1));
    dispatch.finishBackgroundWork();
}

Platform LinuxDesktop::platform()
{
    return {
        dispatch,       clock,       console,         fileSystem,   fileEvents,
        folderEvents,   processes,   resources,       tools,        imageCodec,
        textRecognizer, defaults,    desktopSettings, pasteboard,   keyTap,
        keyPoster,      hotkeys,     permissions,     statusBar,    alerts,
        updater,        application, screens,         textMeasurer, toastViews,
    };
}

} // namespace tallowbay
