#pragma once

#include "platform/x11/X11Session.h"
#include "platform/x11/clipboard/ClipboardContent.h"

#include <functional>

namespace tallowbay::x11 {

// What the owner of the clipboard gives to those who ask, and since when.
struct ClipboardOffer {
    std::shared_ptr<const ClipboardContent> content;
    xcb_timestamp_t ownedSince = XCB_CURRENT_TIME; // without interruption
    xcb_timestamp_t writtenAt = XCB_CURRENT_TIME;
};

// Answers single requests for the clipboard.
//
// Thread: one at a time.
class SelectionAnswers {
public:
    // Puts bytes into a window's property, at once or bit by bit. False if that is impossible.
    using Send =
        std::function<bool(xcb_window_t, xcb_atom_t property, xcb_atom_t type, std::string)>;

    SelectionAnswers(X11Session&, Send);

    // Null offers nothing: the request is refused. True if something was given.
    bool answer(const xcb_selection_request_event_t&, const ClipboardOffer*);

    // A request from before we became the owner was meant for another one.
    bool mayAsk(const xcb_selection_request_event_t&, const ClipboardOffer&) const;

    // Answers a request that nobody has answered yet; without a form it is refused. Whether it was
    // given.
    bool answerLate(const xcb_selection_request_event_t&, std::optional<ClipboardForm>);

    // What the content can be had as beside its forms, by answerLate(). Optional.
    std::function<std::vector<xcb_atom_t>(const ClipboardContent&)> lateForms;

    // Whether it asks what forms there are.
    bool isForForms(const xcb_selection_request_event_t&) const;

    // Whether it asks for the content in one of its forms or in several.
    bool isForContent(const xcb_selection_request_event_t&, const ClipboardContent&) const;

    // The forms of the content, as targets.
    std::vector<xcb_atom_t> forms(const ClipboardContent&) const;

private:
    bool give(const xcb_selection_request_event_t&, xcb_atom_t property, const ClipboardOffer&);
    bool giveOne(xcb_window_t, xcb_atom_t target, xcb_atom_t property, const ClipboardOffer&);
    bool giveMany(xcb_window_t, xcb_atom_t property, const ClipboardOffer&);
    bool giveForm(xcb_window_t, xcb_atom_t target, xcb_atom_t property, const ClipboardContent&);
    std::vector<std::uint32_t> targets(const ClipboardContent&) const;

    X11Session& session;
    Send send;
};

// Puts numbers into a window's property.
void putValues(
    X11Session&, xcb_window_t, xcb_atom_t property, xcb_atom_t type,
    const std::vector<std::uint32_t>& values);

} // namespace tallowbay::x11
