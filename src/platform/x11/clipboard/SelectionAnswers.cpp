#include "platform/x11/clipboard/SelectionAnswers.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tallowbay::x11 {

namespace {

// More pairs than any program asks for at once.
constexpr std::uint32_t mostPairs = 1024;

void notify(X11Session& session, const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    std::array<char, 32> message{}; // what goes over the wire is always this long
    auto& answer = reinterpret_cast<xcb_selection_notify_event_t&>(message);
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    xcb_send_event(
        session.connection(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
    xcb_flush(session.connection());
}

// The server's clock begins anew every 49 days, so "earlier" has to mean "not long ago".
bool isShortlyBefore(xcb_timestamp_t one, xcb_timestamp_t other)
{
    constexpr xcb_timestamp_t hour = 3600 * 1000;
    return other != XCB_CURRENT_TIME && one != other && other - one < hour;
}

// Programs of old name no property and mean the target.
xcb_atom_t propertyOf(const xcb_selection_request_event_t& request)
{
    return request.property == XCB_ATOM_NONE ? request.target : request.property;
}

} // namespace

SelectionAnswers::SelectionAnswers(X11Session& session, Send send)
    : session(session)
    , send(std::move(send))
{
}

bool SelectionAnswers::answer(
    const xcb_selection_request_event_t& request, const ClipboardOffer* offer)
{
    const xcb_atom_t property = propertyOf(request);
    const bool given = offer && mayAsk(request, *offer) && give(request, property, *offer);
    notify(session, request, given ? property : xcb_atom_t(XCB_ATOM_NONE));
    return given;
}

bool SelectionAnswers::answerLate(
    const xcb_selection_request_event_t& request, std::optional<ClipboardForm> form)
{
    const xcb_atom_t property = propertyOf(request);
    const bool given =
        form && send(request.requestor, property, session.atom(form->type), std::move(form->bytes));
    notify(session, request, given ? property : xcb_atom_t(XCB_ATOM_NONE));
    return given;
}

bool SelectionAnswers::mayAsk(
    const xcb_selection_request_event_t& request, const ClipboardOffer& offer) const
{
    const bool tooOld =
        request.time != XCB_CURRENT_TIME && isShortlyBefore(request.time, offer.ownedSince);
    return request.selection == session.atom("CLIPBOARD") && request.owner == session.window()
        && request.requestor != session.window() && !tooOld;
}

bool SelectionAnswers::give(
    const xcb_selection_request_event_t& request, xcb_atom_t property, const ClipboardOffer& offer)
{
    if (request.target == session.atom("MULTIPLE"))
        return request.property != XCB_ATOM_NONE && giveMany(request.requestor, property, offer);
    return giveOne(request.requestor, request.target, property, offer);
}

bool SelectionAnswers::giveOne(
    xcb_window_t window, xcb_atom_t target, xcb_atom_t property, const ClipboardOffer& offer)
{
    if (target == session.atom("TARGETS"))
        putValues(session, window, property, XCB_ATOM_ATOM, targets(*offer.content));
    else if (target == session.atom("TIMESTAMP"))
        putValues(session, window, property, XCB_ATOM_INTEGER, {offer.writtenAt});
    else
        return giveForm(window, target, property, *offer.content);
    return true;
}

// The property lists pairs of a target and a property; a zero tells which ones failed.
bool SelectionAnswers::giveMany(
    xcb_window_t window, xcb_atom_t property, const ClipboardOffer& offer)
{
    const auto list = owned(xcb_get_property_reply(
        session.connection(),
        xcb_get_property(
            session.connection(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * mostPairs),
        nullptr));
    if (!list || list->format != 32)
        return false;
    const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(list.get()));
    std::vector<std::uint32_t> pairs(first, first + list->value_len / 2 * 2);
    for (std::size_t i = 0; i < pairs.size(); i += 2)
        if (pairs[i + 1] == XCB_ATOM_NONE || !giveOne(window, pairs[i], pairs[i + 1], offer))
            pairs[i + 1] = XCB_ATOM_NONE;
    putValues(session, window, property, session.atom("ATOM_PAIR"), pairs);
    return true;
}

bool SelectionAnswers::giveForm(
    xcb_window_t window, xcb_atom_t target, xcb_atom_t property, const ClipboardContent& content)
{
    for (const std::string_view name : formNames(content)) {
        if (session.atom(name) != target)
            continue;
        auto form = formOf(content, name);
        return send(window, property, session.atom(form->type), std::move(form->bytes));
    }
    return false;
}

std::vector<std::uint32_t> SelectionAnswers::targets(const ClipboardContent& content) const
{
    std::vector<std::uint32_t> list{session.atom("TARGETS"), session.atom("TIMESTAMP")};
    const std::vector<xcb_atom_t> formTargets = forms(content);
    if (!formTargets.empty())
        list.push_back(session.atom("MULTIPLE"));
    list.insert(list.end(), formTargets.begin(), formTargets.end());
    const auto late = lateForms ? lateForms(content) : std::vector<xcb_atom_t>();
    list.insert(list.end(), late.begin(), late.end());
    return list;
}

bool SelectionAnswers::isForForms(const xcb_selection_request_event_t& request) const
{
    return request.target == session.atom("TARGETS");
}

bool SelectionAnswers::isForContent(
    const xcb_selection_request_event_t& request, const ClipboardContent& content) const
{
    std::vector<xcb_atom_t> all = forms(content);
    const auto late = lateForms ? lateForms(content) : std::vector<xcb_atom_t>();
    all.insert(all.end(), late.begin(), late.end());
    all.push_back(session.atom("MULTIPLE"));
    return std::ranges::find(all, request.target) != all.end();
}

std::vector<xcb_atom_t> SelectionAnswers::forms(const ClipboardContent& content) const
{
    std::vector<xcb_atom_t> atoms;
    for (const std::string_view name : formNames(content))
        atoms.push_back(session.atom(name));
    return atoms;
}

void putValues(
    X11Session& session, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
    const std::vector<std::uint32_t>& values)
{
    xcb_change_property(
        session.connection(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
        std::uint32_t(values.size()), values.data());
}

} // namespace tallowbay::x11
