#pragma once

#include "platform/x11/keys/VirtualKeys.h"
#include "platform/x11/keys/X11Modifiers.h"

#include <set>
#include <utility>

namespace tallowbay::x11 {

// Keys that the server hands to us alone, whatever window has the focus: each with its modifiers,
// whatever locks are on. The server lets go of them by itself when the connection ends.
//
// Thread: main queue; the connection outlives it.
class X11KeyGrabs {
public:
    using Key = std::pair<HardwareKey, X11Modifiers::Mask>;

    X11KeyGrabs(xcb_connection_t* server, xcb_window_t root)
        : server(server)
        , root(root)
    {
    }
    X11KeyGrabs(const X11KeyGrabs&) = delete;
    X11KeyGrabs& operator=(const X11KeyGrabs&) = delete;
    ~X11KeyGrabs() { hold({}); }

    // Takes and releases keys so that of those wanted all are held that can be. One that another
    // program owns, be it with some locks only, is left alone.
    void hold(const std::set<Key>& wanted);

    bool holds(Key key) const { return held.contains(key); }

    // The locks of the keyboard have changed; everything held is taken anew.
    void setLockVariants(std::vector<X11Modifiers::Mask>);

private:
    bool grab(Key);
    void release(Key);

    xcb_connection_t* server;
    xcb_window_t root;
    std::vector<X11Modifiers::Mask> variants = X11Modifiers().lockVariants();
    std::set<Key> held;
};

} // namespace tallowbay::x11
