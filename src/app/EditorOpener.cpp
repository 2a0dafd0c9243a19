#include "app/EditorOpener.h"

#include "app/ScreenshotBatch.h"
#include "editor/EditorSlot.h"
#include "editor/window/AnnotationWindow.h"
#include "platform/Dispatch.h"
#include "ui/TallowLoaderPanel.h"

#include <utility>

namespace tallowbay {

EditorOpener::EditorOpener(
    const Platform& platform, Views& views, ToastGate& toasts, ScreenshotBatch& batch,
    EditorSlot& slot)
    : platform(platform)
    , views(views)
    , toasts(toasts)
    , batch(batch)
    , slot(slot)
    , saver(
          platform.dispatch,
          {platform.fileSystem,
           platform.imageCodec,
           platform.offscreenGraphics,
           {platform.fileSystem, platform.processes, platform.resources, platform.tools}})
{
    saver.onWritten = [this](const auto& url, bool succeeded) { editWritten(url, succeeded); };
}

EditorOpener::~EditorOpener()
{
    slot.empty();
}

void EditorOpener::openAnnotationWindow(bool showSettings)
{
    if (annotationWindow && annotationWindow->visible() && !showSettings) {
        annotationWindow->confirmAndDismiss();
        return;
    }
    if (annotationWindow) {
        show(showSettings);
        return;
    }
    settingsWanted = settingsWanted || showSettings;
    if (std::exchange(building, true))
        return;
    showLoader();
    // Twice, so that the loader is on the screen before the work begins.
    platform.dispatch.mainAsync(lifetime.guard(
        [this] { platform.dispatch.mainAsync(lifetime.guard([this] { build(); })); }));
}

void EditorOpener::build()
{
    annotationWindow = std::make_unique<AnnotationWindow>(platform, views, saver, toasts);
    const auto write = [this](const AnnotationWindow::Paths& urls) { batch.writeClipboard(urls); };
    annotationWindow->onConfirm = write;
    annotationWindow->onClipboardUpdate = write;
    annotationWindow->onWriteEnded = [this](const auto& url, bool succeeded) {
        batch.editWritten(url, succeeded);
    };
    slot.fill(*annotationWindow);
    replayBatch();
    building = false;
    show(std::exchange(settingsWanted, false));
    hideTallowLoader();
}

void EditorOpener::replayBatch()
{
    for (const auto& url : batch.urls())
        annotationWindow->addURL(url);
    if (!batch.urls().empty())
        annotationWindow->clearPendingDivider();
}

void EditorOpener::show(bool withSettings)
{
    annotationWindow->show();
    if (withSettings)
        annotationWindow->showSettings();
}

void EditorOpener::showLoader()
{
    tallowLoader = std::make_unique<TallowLoaderPanel>(platform.screens, views);
    tallowLoader->centerOnActiveScreen();
    tallowLoader->orderFront();
    tallowLoader->startPulse();
}

void EditorOpener::hideTallowLoader()
{
    tallowLoaderTimer = {};
    if (!tallowLoader)
        return;
    leavingLoaders.push_back(std::move(tallowLoader));
    leavingLoaders.back()->fadeOut(
        [this, leaving = std::prev(leavingLoaders.end())] { leavingLoaders.erase(leaving); });
}

void EditorOpener::editWritten(const std::filesystem::path& url, bool succeeded)
{
    if (annotationWindow)
        annotationWindow->fileWritten(url, succeeded);
    batch.editWritten(url, succeeded);
}

} // namespace tallowbay
