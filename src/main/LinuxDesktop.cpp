#include "main/LinuxDesktop.h"

#include "platform/linux/Environment.h"
#include "platform/qt/Artwork.h"

namespace tallowbay {

LinuxDesktop::LinuxDesktop()
    : resources(
        linux_desktop::runningProgramFolder(),
        [](const std::string& name) { return qt::Artwork().has(QString::fromStdString(name)); })
    , tools(linux_desktop::linuxToolPaths(resources))
    , defaults(linux_desktop::environmentConfigFolder())
{
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
