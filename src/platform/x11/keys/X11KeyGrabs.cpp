#include "platform/x11/keys/X11KeyGrabs.h"

#include "platform/x11/X11Event.h"

namespace tallowbay::x11 {

void X11KeyGrabs::hold(const std::set<Key>& wanted)
{
    for (const Key& key : std::set(held)) {
        if (!wanted.contains(key))
            release(key);
    }
    for (const Key& key : wanted) {
        if (!held.contains(key) && grab(key))
            held.insert(key);
    }
    xcb_flush(server);
}

void X11KeyGrabs::setLockVariants(std::vector<X11Modifiers::Mask> present)
{
    if (present == variants)
        return;
    const auto keys = held;
    hold({});
    variants = std::move(present);
    hold(keys);
}

bool X11KeyGrabs::grab(Key key)
{
    std::vector<xcb_void_cookie_t> requests;
    for (const auto lock : variants) {
        requests.push_back(xcb_grab_key_checked(
            server, 0, root, key.second | lock, key.first, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC));
    }
    bool refused = false;
    for (const auto request : requests)
        refused = owned(xcb_request_check(server, request)) || refused;
    if (refused)
        release(key);
    return !refused;
}

// Releasing what another program owns does nothing.
void X11KeyGrabs::release(Key key)
{
    for (const auto lock : variants)
        xcb_ungrab_key(server, key.first, root, key.second | lock);
    held.erase(key);
}

} // namespace tallowbay::x11
