#pragma once

#include "base/Lifetime.h"
#include "editor/saving/AnnotationSaver.h"
#include "platform/Platform.h"

#include <list>
#include <memory>

namespace tallowbay {

class AnnotationWindow;
class EditorSlot;
class ScreenshotBatch;
class TallowLoaderPanel;
class ToastGate;
class Views;

// The one way to the editor, and its ties to the batch. There is one window: built when it is asked
// for first, and kept.
//
// Thread: main queue.
class EditorOpener {
public:
    EditorOpener(const Platform&, Views&, ToastGate&, ScreenshotBatch&, EditorSlot&);
    ~EditorOpener();

    // Shows the editor, with its settings if they are asked for. Without them, an editor that is on
    // the screen is confirmed and closed instead. The first time, a loader shows while the window
    // is built, on later turns of the main queue; who asks again meanwhile asks for the same
    // window.
    void openAnnotationWindow(bool showSettings);

    // Null until it is built.
    AnnotationWindow* window() const { return annotationWindow.get(); }

private:
    void showLoader();
    void hideTallowLoader();
    void build();
    void replayBatch();
    void show(bool withSettings);
    void editWritten(const std::filesystem::path&, bool succeeded);

    const Platform platform;
    Views& views;
    ToastGate& toasts;
    ScreenshotBatch& batch;
    EditorSlot& slot;
    AnnotationSaver saver;
    std::unique_ptr<AnnotationWindow> annotationWindow;
    std::unique_ptr<TallowLoaderPanel> tallowLoader;
    Subscription tallowLoaderTimer; // for a loader that would end by itself; none does so far
    std::list<std::unique_ptr<TallowLoaderPanel>> leavingLoaders; // fading out
    bool building = false;
    bool settingsWanted = false; // by those who asked while it was being built
    Lifetime lifetime;
};

} // namespace tallowbay
