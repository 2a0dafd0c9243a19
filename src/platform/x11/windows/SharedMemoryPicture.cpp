#include "platform/x11/windows/SharedMemoryPicture.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>

namespace tallowbay::x11 {

namespace {

template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

// So small that a band is still in the processor's cache when it is copied.
constexpr std::size_t bandBytes = 1 << 20;

// Memory of ours that the server writes to.
class SharedMemory {
public:
    explicit SharedMemory(xcb_connection_t& server)
        : server(&server)
    {
        const auto* extension = xcb_get_extension_data(&server, &xcb_shm_id);
        if (extension && extension->present)
            attach();
    }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory()
    {
        if (isAttached)
            xcb_shm_detach(server, segment);
        if (words)
            ::shmdt(words);
    }

    // A server that cannot reach it is on another machine.
    explicit operator bool() const { return isAttached; }

    // The pixels of a part of the window; null if it has none.
    const std::uint32_t* fill(xcb_window_t window, const PixelRect& part) const
    {
        const auto cookie = xcb_shm_get_image(
            server, window, std::int16_t(part.x), std::int16_t(part.y), std::uint16_t(part.width),
            std::uint16_t(part.height), ~0u, XCB_IMAGE_FORMAT_Z_PIXMAP, segment, 0);
        xcb_generic_error_t* error = nullptr;
        const Owned<xcb_shm_get_image_reply_t> reply(
            xcb_shm_get_image_reply(server, cookie, &error), &std::free);
        const Owned<xcb_generic_error_t> refusal(error, &std::free);
        return reply ? words : nullptr;
    }

private:
    void attach()
    {
        const int id = ::shmget(IPC_PRIVATE, bandBytes, IPC_CREAT | 0600);
        if (id < 0)
            return;
        void* const memory = ::shmat(id, nullptr, 0);
        if (memory != reinterpret_cast<void*>(-1)) {
            words = static_cast<std::uint32_t*>(memory);
            segment = xcb_generate_id(server);
            const Owned<xcb_generic_error_t> refusal(
                xcb_request_check(
                    server, xcb_shm_attach_checked(server, segment, std::uint32_t(id), false)),
                &std::free);
            isAttached = !refusal && !xcb_connection_has_error(server);
        }
        ::shmctl(id, IPC_RMID, nullptr); // it lasts as long as somebody has it
    }

    xcb_connection_t* server;
    std::uint32_t* words = nullptr;
    xcb_shm_seg_t segment = XCB_NONE;
    bool isAttached = false;
};

const xcb_visualtype_t* visualOf(const xcb_screen_t& screen)
{
    auto depth = xcb_screen_allowed_depths_iterator(&screen);
    for (; depth.rem; xcb_depth_next(&depth)) {
        auto visual = xcb_depth_visuals_iterator(depth.data);
        for (; visual.rem; xcb_visualtype_next(&visual))
            if (visual.data->visual_id == screen.root_visual)
                return visual.data;
    }
    return nullptr;
}

// Words of 0x__RRGGBB, as a bitmap has them.
bool hasOurWords(const xcb_setup_t& setup, const xcb_screen_t& screen)
{
    constexpr auto ourOrder = std::endian::native == std::endian::little
        ? XCB_IMAGE_ORDER_LSB_FIRST
        : XCB_IMAGE_ORDER_MSB_FIRST;
    const auto* visual = visualOf(screen);
    auto format = xcb_setup_pixmap_formats_iterator(&setup);
    while (format.rem && format.data->depth != screen.root_depth)
        xcb_format_next(&format);
    return setup.image_byte_order == ourOrder && format.rem && format.data->bits_per_pixel == 32
        && visual && visual->red_mask == 0xFF0000 && visual->green_mask == 0xFF00
        && visual->blue_mask == 0xFF;
}

} // namespace

std::optional<Bitmap> pictureThroughSharedMemory(xcb_connection_t& server, const PixelRect& part)
{
    const xcb_setup_t* setup = xcb_get_setup(&server);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(setup).data;
    if (part.empty() || !hasOurWords(*setup, *screen))
        return std::nullopt;
    const SharedMemory memory(server);
    if (!memory)
        return std::nullopt;
    Bitmap picture({part.width, part.height});
    const int bandRows = std::max(1, int(bandBytes / picture.bytesPerRow()));
    for (int y = 0; y < part.height; y += bandRows) {
        const int rows = std::min(bandRows, part.height - y);
        const auto* words = memory.fill(screen->root, {part.x, part.y + y, part.width, rows});
        if (!words)
            return std::nullopt;
        std::transform(
            words, words + std::size_t(part.width) * std::size_t(rows), picture.row(y),
            [](std::uint32_t word) { return word | 0xFF000000; });
    }
    return picture;
}

} // namespace tallowbay::x11
