#include "platform/x11/clipboard/SelectionTransfers.h"

#include <algorithm>

namespace tallowbay::x11 {

namespace {

using namespace std::chrono_literals;

// Beyond this a single request would hold up the server's other clients.
constexpr std::size_t longestPiece = 65536;
constexpr std::size_t requestHeader = 64;

constexpr auto idleInterval = 20s;
constexpr int idleTicksAllowed = 3;

} // namespace

SelectionTransfers::SelectionTransfers(X11Session& session, Dispatch& dispatch)
    : session(session)
    , dispatch(dispatch)
{
}

bool SelectionTransfers::send(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string bytes)
{
    forget(window, property);
    if (bytes.size() > pieceLength())
        return begin({window, property, type, std::move(bytes)});
    xcb_change_property(
        session.connection(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
        std::uint32_t(bytes.size()), bytes.data());
    return true;
}

void SelectionTransfers::forget(xcb_window_t window, xcb_atom_t property)
{
    if (const auto earlier = find(window, property); earlier != transfers.end())
        end(earlier);
}

void SelectionTransfers::handle(const X11Event& event)
{
    if (event.type() == XCB_DESTROY_NOTIFY) {
        endAll(event.as<xcb_destroy_notify_event_t>().window);
        return;
    }
    if (event.type() != XCB_PROPERTY_NOTIFY)
        return;
    const auto& change = event.as<xcb_property_notify_event_t>();
    const auto transfer = find(change.window, change.atom);
    if (change.state == XCB_PROPERTY_DELETE && transfer != transfers.end())
        sendPiece(transfer);
}

std::size_t SelectionTransfers::pieceLength() const
{
    const std::size_t longestRequest =
        std::size_t(xcb_get_maximum_request_length(session.connection())) * 4;
    return std::min(longestPiece, std::max(longestRequest, 2 * requestHeader) - requestHeader);
}

bool SelectionTransfers::begin(Transfer transfer)
{
    // Before the property is there, so that its removal cannot be missed.
    if (!watch(transfer.window))
        return false;
    const auto atLeast = std::uint32_t(transfer.bytes.size());
    xcb_change_property(
        session.connection(), XCB_PROP_MODE_REPLACE, transfer.window, transfer.property,
        session.atom("INCR"), 32, 1, &atLeast);
    transfers.push_back(std::move(transfer));
    if (!idleTimer)
        idleTimer = dispatch.repeatEvery(idleInterval, [this] { endIdle(); });
    return true;
}

bool SelectionTransfers::watch(xcb_window_t window)
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto request = xcb_change_window_attributes_checked(
        session.connection(), window, XCB_CW_EVENT_MASK, &events);
    return !owned(xcb_request_check(session.connection(), request));
}

// The last piece is empty.
void SelectionTransfers::sendPiece(Position transfer)
{
    const std::size_t length = std::min(transfer->bytes.size() - transfer->sent, pieceLength());
    xcb_change_property(
        session.connection(), XCB_PROP_MODE_REPLACE, transfer->window, transfer->property,
        transfer->type, 8, std::uint32_t(length), transfer->bytes.data() + transfer->sent);
    transfer->sent += length;
    transfer->idleTicks = 0;
    if (length == 0)
        end(transfer);
    xcb_flush(session.connection());
}

void SelectionTransfers::end(Position transfer)
{
    const xcb_window_t window = transfer->window;
    transfers.erase(transfer);
    const bool needed = std::ranges::any_of(
        transfers, [window](const Transfer& other) { return other.window == window; });
    if (!needed) {
        const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(session.connection(), window, XCB_CW_EVENT_MASK, &none);
    }
    if (transfers.empty())
        idleTimer.reset();
}

SelectionTransfers::Position SelectionTransfers::find(xcb_window_t window, xcb_atom_t property)
{
    return std::ranges::find_if(transfers, [=](const Transfer& transfer) {
        return transfer.window == window && transfer.property == property;
    });
}

void SelectionTransfers::endAll(xcb_window_t window)
{
    for (auto transfer = transfers.begin(); transfer != transfers.end();) {
        const auto current = transfer++;
        if (current->window == window)
            end(current);
    }
}

void SelectionTransfers::endIdle()
{
    for (auto transfer = transfers.begin(); transfer != transfers.end();) {
        const auto current = transfer++;
        if (++current->idleTicks > idleTicksAllowed)
            end(current);
    }
}

} // namespace tallowbay::x11
