#include "main/SharedBackends.h"

#include "platform/posix/Environment.h"
#include "platform/qt/Artwork.h"

#include <QDesktopServices>

namespace tallowbay {

namespace {

qt::AppcastUpdater::Setup updaterSetup()
{
    return {TALLOWBAY_VERSION, TALLOWBAY_UPDATE_FEED, {}, [](const QUrl& link) {
                QDesktopServices::openUrl(link);
            }};
}

} // namespace

SharedBackends::SharedBackends()
    : resources(
        posix::runningProgramFolder(),
        [](const std::string& name) { return qt::Artwork().has(QString::fromStdString(name)); })
    , tools(posix::linuxToolPaths(resources))
    , defaults(posix::environmentConfigFolder())
    , screenshotSettings(dispatch, posix::SessionSurroundings::ofEnvironment())
    , desktopSettings(screenshotSettings.settings())
    , updater(defaults, updaterSetup())
{
}

void SharedBackends::finishBackgroundWork()
{
    application.endAtNextSignal();
    processes.endChildren(std::chrono::seconds(1));
    dispatch.finishBackgroundWork();
}

} // namespace tallowbay
