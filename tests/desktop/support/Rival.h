#pragma once

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace tallowbay::test {

// A client that asks for what a region selection asks for, to see whether one is under way.
class Rival {
public:
    explicit Rival(const std::string& display)
        : connection(xcb_connect(display.c_str(), nullptr), xcb_disconnect)
    {
    }

    bool grabKeyboard()
    {
        const auto cookie = xcb_grab_keyboard(
            connection.get(), false, root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC);
        const Reply<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(connection.get(), cookie, nullptr), std::free);
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    void releaseKeyboard()
    {
        xcb_ungrab_keyboard(connection.get(), XCB_CURRENT_TIME);
        xcb_flush(connection.get());
    }

    bool keyboardIsHeldByAnother()
    {
        const bool held = !grabKeyboard();
        releaseKeyboard();
        return held;
    }

    // Whether a window lies over the whole desktop.
    bool desktopIsCovered()
    {
        return std::ranges::any_of(shownSizes(), [this](const Size& size) {
            return size.width == screen().width_in_pixels
                && size.height == screen().height_in_pixels;
        });
    }

    // The width of the toast that is shown, 0 if there is none. No other window is as high.
    int toastWidth()
    {
        for (const Size& size : shownSizes()) {
            if (size.height == 48)
                return size.width;
        }
        return 0;
    }

private:
    template <typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;

    struct Size {
        int width = 0;
        int height = 0;
    };

    const xcb_screen_t& screen() const
    {
        return *xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    }

    xcb_window_t root() const { return screen().root; }

    bool isShown(xcb_window_t window)
    {
        const auto cookie = xcb_get_window_attributes(connection.get(), window);
        const Reply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(connection.get(), cookie, nullptr), std::free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE && reply->override_redirect;
    }

    // Of the windows that no window manager has a say in.
    std::vector<Size> shownSizes()
    {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(
                connection.get(), xcb_query_tree(connection.get(), root()), nullptr),
            std::free);
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        std::vector<Size> sizes;
        for (int i = 0; i < tree->children_len; ++i) {
            if (isShown(children[i]))
                sizes.push_back(sizeOf(children[i]));
        }
        return sizes;
    }

    Size sizeOf(xcb_window_t window)
    {
        const auto cookie = xcb_get_geometry(connection.get(), window);
        const Reply<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(connection.get(), cookie, nullptr), std::free);
        return reply ? Size{reply->width, reply->height} : Size{};
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection;
};

} // namespace tallowbay::test
