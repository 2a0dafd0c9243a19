#pragma once

#include "platform/Permissions.h"
#include "platform/x11/X11Session.h"

namespace tallowbay::x11 {

// An X server asks nobody: what it can do may be done. The X server of a Wayland session grants
// everything and does nothing of it for the other programs of the session.
class X11Permissions : public Permissions {
public:
    X11Permissions(X11Session&, bool waylandSession);

    Permission accessibility() const override { return keys; }
    Permission screenRecording() const override { return screen; }

private:
    Permission keys;
    Permission screen;
};

} // namespace tallowbay::x11
