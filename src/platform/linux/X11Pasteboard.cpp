#include "platform/linux/X11Pasteboard.h"

#include "platform/linux/FileUris.h"
#include "platform/linux/SelectionReader.h"

#include <algorithm>
#include <array>

#include <xcb/xfixes.h>

namespace tallowbay::linux_desktop {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds readLimit = 500ms;
constexpr std::chrono::milliseconds longestHandOver = 1s;

// More pairs than any program asks for at once.
constexpr std::uint32_t mostPairs = 1024;

bool isEarlier(xcb_timestamp_t one, xcb_timestamp_t other)
{
    return isBefore(one, other);
}

} // namespace

X11Pasteboard::X11Pasteboard(X11Session& session, Dispatch& dispatch)
    : session(session)
    , transfers(session, dispatch)
    , clipboard(session.atom("CLIPBOARD"))
    , events(session.watchOnMain([this](const X11Event& event) { handle(event); }))
{
    xcb_xfixes_select_selection_input(
        session.connection(), session.root(), clipboard,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(session.connection());
}

X11Pasteboard::~X11Pasteboard() = default;

void X11Pasteboard::clear()
{
    own({});
}

void X11Pasteboard::writeFiles(const std::vector<std::filesystem::path>& files)
{
    own(files.empty() ? ClipboardContent() : ClipboardContent(files));
}

void X11Pasteboard::writeText(const std::string& text)
{
    own(text);
}

std::vector<std::filesystem::path> X11Pasteboard::readFiles() const
{
    constexpr std::array<std::string_view, 2> forms{
        "text/uri-list", "x-special/gnome-copied-files"};
    const xcb_window_t owner = currentOwner(clipboard);
    if (owner == session.window()) {
        const auto* files = std::get_if<std::vector<std::filesystem::path>>(&content);
        return files ? *files : std::vector<std::filesystem::path>();
    }
    const auto list =
        owner == XCB_NONE ? std::nullopt : readClipboard(session.displayName(), forms, readLimit);
    return list ? localFiles(*list) : std::vector<std::filesystem::path>();
}

std::int64_t X11Pasteboard::changeCount() const
{
    return changes;
}

bool X11Pasteboard::handOver(std::chrono::milliseconds limit)
{
    const bool hasText = isOwner && std::holds_alternative<std::string>(content);
    return hasText && currentOwner(session.atom("CLIPBOARD_MANAGER")) != XCB_NONE
        && askManagerToSave(std::min(limit, longestHandOver));
}

// Owning it anew with each change tells clipboard managers and open paste menus of the change.
void X11Pasteboard::own(ClipboardContent next)
{
    content = std::move(next);
    ++changes;
    writtenAt = session.serverTime();
    writtenBy =
        xcb_set_selection_owner(session.connection(), session.window(), clipboard, writtenAt)
            .sequence;
    const bool wasOwner = isOwner;
    isOwner = currentOwner(clipboard) == session.window();
    if (!wasOwner)
        ownerSince = writtenAt;
}

xcb_window_t X11Pasteboard::currentOwner(xcb_atom_t selection) const
{
    const auto reply = owned(xcb_get_selection_owner_reply(
        session.connection(), xcb_get_selection_owner(session.connection(), selection), nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_NONE);
}

void X11Pasteboard::handle(const X11Event& event)
{
    transfers.handle(event);
    if (event.type() == XCB_SELECTION_REQUEST)
        answer(event.as<xcb_selection_request_event_t>());
    else if (event.type() == XCB_SELECTION_CLEAR)
        noteLoss(event);
    else if (event.type() == session.selectionEvent() + XCB_XFIXES_SELECTION_NOTIFY)
        noteOtherOwner(event);
}

void X11Pasteboard::noteLoss(const X11Event& event)
{
    if (event.as<xcb_selection_clear_event_t>().selection != clipboard)
        return;
    if (isBefore(event.sequence(), writtenBy)) { // since then we have become the owner again
        ownerSince = writtenAt;
        return;
    }
    isOwner = false;
    content = {};
}

// A change that came before our last write was counted with that.
void X11Pasteboard::noteOtherOwner(const X11Event& event)
{
    const auto& change = event.as<xcb_xfixes_selection_notify_event_t>();
    const bool older = isBefore(event.sequence(), writtenBy);
    if (change.selection == clipboard && change.owner != session.window() && !older)
        ++changes;
}

void X11Pasteboard::answer(const xcb_selection_request_event_t& request)
{
    // Programs of old name no property and mean the target.
    const xcb_atom_t property =
        request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool isMultiple = request.target == session.atom("MULTIPLE");
    const bool done = mayAsk(request)
        && (isMultiple
                ? request.property != XCB_ATOM_NONE && convertMany(request.requestor, property)
                : convert(request.requestor, request.target, property));

    std::array<char, 32> message{}; // what goes over the wire is always this long
    auto& notify = reinterpret_cast<xcb_selection_notify_event_t&>(message);
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = done ? property : xcb_atom_t(XCB_ATOM_NONE);
    xcb_send_event(
        session.connection(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
    xcb_flush(session.connection());
}

// A request from before we became the owner was meant for another one.
bool X11Pasteboard::mayAsk(const xcb_selection_request_event_t& request) const
{
    const bool tooOld = request.time != XCB_CURRENT_TIME && isEarlier(request.time, ownerSince);
    return isOwner && request.selection == clipboard && request.owner == session.window()
        && request.requestor != session.window() && !tooOld;
}

bool X11Pasteboard::convert(xcb_window_t window, xcb_atom_t target, xcb_atom_t property)
{
    if (target == session.atom("TARGETS")) {
        putTargets(window, property);
        return true;
    }
    if (target == session.atom("TIMESTAMP")) {
        put(window, property, XCB_ATOM_INTEGER, {writtenAt});
        return true;
    }
    return putForm(window, target, property);
}

// The property lists pairs of a target and a property; a zero tells which ones failed.
bool X11Pasteboard::convertMany(xcb_window_t window, xcb_atom_t property)
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
        if (pairs[i + 1] == XCB_ATOM_NONE || !convert(window, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    put(window, property, session.atom("ATOM_PAIR"), pairs);
    return true;
}

void X11Pasteboard::putTargets(xcb_window_t window, xcb_atom_t property)
{
    std::vector<std::uint32_t> targets{session.atom("TARGETS"), session.atom("TIMESTAMP")};
    const std::vector<xcb_atom_t> forms = formAtoms();
    if (!forms.empty())
        targets.push_back(session.atom("MULTIPLE"));
    targets.insert(targets.end(), forms.begin(), forms.end());
    put(window, property, XCB_ATOM_ATOM, targets);
}

void X11Pasteboard::put(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
    const std::vector<std::uint32_t>& values)
{
    xcb_change_property(
        session.connection(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
        std::uint32_t(values.size()), values.data());
}

bool X11Pasteboard::putForm(xcb_window_t window, xcb_atom_t target, xcb_atom_t property)
{
    for (const std::string_view name : formNames(content)) {
        if (session.atom(name) != target)
            continue;
        auto form = formOf(content, name);
        return transfers.send(window, property, session.atom(form->type), std::move(form->bytes));
    }
    return false;
}

std::vector<xcb_atom_t> X11Pasteboard::formAtoms() const
{
    std::vector<xcb_atom_t> atoms;
    for (const std::string_view name : formNames(content))
        atoms.push_back(session.atom(name));
    return atoms;
}

// The manager reads the content from us meanwhile, so requests are answered while we wait.
bool X11Pasteboard::askManagerToSave(std::chrono::milliseconds limit)
{
    const xcb_atom_t saveTargets = session.atom("SAVE_TARGETS");
    const xcb_atom_t property = session.atom("TALLOWBAY_SAVE");
    std::optional<bool> saved;
    const auto answer = session.watchOnMain([&](const X11Event& event) {
        if (event.type() != XCB_SELECTION_NOTIFY)
            return;
        const auto& notify = event.as<xcb_selection_notify_event_t>();
        if (notify.target == saveTargets)
            saved = notify.property != XCB_ATOM_NONE;
    });
    put(session.window(), property, XCB_ATOM_ATOM, formAtoms());
    xcb_convert_selection(
        session.connection(), session.window(), session.atom("CLIPBOARD_MANAGER"), saveTargets,
        property, writtenAt);
    xcb_flush(session.connection());
    session.handleUntil([&] { return saved.has_value(); }, limit);
    return saved.value_or(false);
}

} // namespace tallowbay::linux_desktop
