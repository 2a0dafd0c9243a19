#include "platform/x11/keys/X11Keymap.h"

#include <xkbcommon/xkbcommon-x11.h>

namespace tallowbay::x11 {

Keymap readKeymap(xcb_connection_t* server)
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
    const auto device = xkb_x11_get_core_keyboard_device_id(server);
    if (!context || device < 0)
        return nullptr;
    return Keymap(
        xkb_x11_keymap_new_from_device(context.get(), server, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

} // namespace tallowbay::x11
