#pragma once

#include "main/Desktop.h"
#include "main/SharedBackends.h"
#include "platform/qt/tray/QtStatusBar.h"
#include "platform/x11/X11Permissions.h"
#include "platform/x11/X11Session.h"
#include "platform/x11/clipboard/X11Pasteboard.h"
#include "platform/x11/keys/X11Hotkeys.h"
#include "platform/x11/keys/X11KeyPoster.h"
#include "platform/x11/keys/X11KeyTap.h"
#include "platform/x11/keys/X11Keyboard.h"
#include "platform/x11/windows/X11EmbeddingTray.h"
#include "platform/x11/windows/X11WindowSystem.h"
#include "views/QtViews.h"

#include <memory>

namespace tallowbay {

// The program on an X server: clipboard, keys and hotkeys share one connection to it.
class X11Desktop final : public Desktop {
public:
    // Throws DisplayUnusable.
    X11Desktop();

    Platform platform() override;
    Views& views() override { return qtViews; }
    int run() override { return shared.application.run(); }
    void finishBackgroundWork() override { shared.finishBackgroundWork(); }

private:
    SharedBackends shared;
    std::unique_ptr<x11::X11Session> session;
    x11::X11Pasteboard pasteboard;
    x11::X11Keyboard keyboard;
    x11::X11KeyTap keyTap;
    x11::X11KeyPoster keyPoster;
    x11::X11Hotkeys hotkeys;
    x11::X11Permissions permissions;
    x11::X11WindowSystem windowSystem;
    x11::X11EmbeddingTray embeddingTray;
    qt::QtStatusBar statusBar{embeddingTray};
    views::QtViews qtViews{windowSystem};
};

} // namespace tallowbay
