#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/ClipboardContent.h"
#include "platform/linux/SelectionTransfers.h"

namespace tallowbay::linux_desktop {

// The clipboard of an X11 session, as the owner of its CLIPBOARD selection.
//
// Requests are answered on the main queue only, in their order among all other events of the
// session: a handler that a key press set off there changes the content before the paste that the
// same key press caused reads it.
class X11Pasteboard : public Pasteboard {
public:
    X11Pasteboard(X11Session&, Dispatch&);
    ~X11Pasteboard() override;

    void clear() override;
    void writeFiles(const std::vector<std::filesystem::path>&) override;
    void writeText(const std::string&) override;
    std::vector<std::filesystem::path> readFiles() const override;
    std::int64_t changeCount() const override;
    bool handOver(std::chrono::milliseconds limit) override;

    // Long transfers to other programs that are under way.
    std::size_t transferCount() const { return transfers.size(); }

private:
    void own(ClipboardContent);
    xcb_window_t currentOwner(xcb_atom_t selection) const;
    void handle(const X11Event&);
    void noteLoss(const X11Event&);
    void noteOtherOwner(const X11Event&);
    void answer(const xcb_selection_request_event_t&);
    bool mayAsk(const xcb_selection_request_event_t&) const;
    bool convert(xcb_window_t, xcb_atom_t target, xcb_atom_t property);
    bool convertMany(xcb_window_t, xcb_atom_t property);
    void putTargets(xcb_window_t, xcb_atom_t property);
    void put(
        xcb_window_t, xcb_atom_t property, xcb_atom_t type,
        const std::vector<std::uint32_t>& values);
    bool putForm(xcb_window_t, xcb_atom_t target, xcb_atom_t property);
    std::vector<xcb_atom_t> formAtoms() const;
    bool askManagerToSave(std::chrono::milliseconds limit);

    X11Session& session;
    SelectionTransfers transfers;
    xcb_atom_t clipboard;
    ClipboardContent content;
    bool isOwner = false;
    xcb_timestamp_t ownerSince = XCB_CURRENT_TIME; // without interruption
    xcb_timestamp_t writtenAt = XCB_CURRENT_TIME;
    std::uint32_t writtenBy = 0; // the number of the request that made us the owner
    std::int64_t changes = 0;
    Subscription events;
};

} // namespace tallowbay::linux_desktop
