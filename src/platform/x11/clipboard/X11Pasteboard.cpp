#include "platform/x11/clipboard/X11Pasteboard.h"

#include "platform/posix/files/FileUris.h"
#include "platform/x11/clipboard/SelectionReader.h"

#include <algorithm>
#include <array>
#include <utility>

#include <xcb/xfixes.h>

namespace tallowbay::x11 {

namespace {

using namespace std::chrono_literals;

using Files = std::vector<std::filesystem::path>;

constexpr std::chrono::milliseconds readLimit = 500ms;
constexpr std::chrono::milliseconds longestHandOver = 1s;

// Until a clipboard manager asks what is new, and between two of its questions.
constexpr std::chrono::milliseconds managerBegins = 500ms;
constexpr std::chrono::milliseconds managerGoesOn = 250ms;

std::chrono::milliseconds timeTo(std::chrono::steady_clock::time_point end)
{
    return std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
}

} // namespace

X11Pasteboard::X11Pasteboard(X11Session& session, Dispatch& dispatch)
    : session(session)
    , dispatch(dispatch)
    , transfers(session, dispatch)
    , answers(
          session,
          [this](xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string bytes) {
              return transfers.send(window, property, type, std::move(bytes));
          })
    , toolkitAnswers(
          session,
          [this](
              xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& bytes) {
              return sendWhole(window, property, type, bytes);
          })
    , clipboard(session.atom("CLIPBOARD"))
    , held(
          answers, dispatch,
          [this](const xcb_selection_request_event_t& request) { return giveHeld(request); },
          [this] { announceLate(); })
    , events(session.watchOnMain([this](const X11Event& event) { handle(event); }))
{
    xcb_xfixes_select_selection_input(
        session.connection(), session.root(), clipboard,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(session.connection());
}

X11Pasteboard::~X11Pasteboard()
{
    unannounced = false;
    held.drop();
}

void X11Pasteboard::answerOwnToolkit(std::uint32_t resourceBase, std::uint32_t resourceMask)
{
    toolkit = {resourceBase, resourceMask};
    toolkitEvents = session.watchOnThread(
        [this, client = toolkit](const X11Event& event) { answerToolkit(client, event); });
}

void X11Pasteboard::offerTransfers(FileTransfer& transfer)
{
    fileTransfers.emplace(answers, dispatch, transfer);
    fileTransfers->onGiven = [this](const auto& request) { tellIfTaken(request); };
    answers.lateForms = [this](const ClipboardContent& content) {
        return fileTransfers->offers(content)
            ? std::vector<xcb_atom_t>{session.atom(TransferAnswers::form)}
            : std::vector<xcb_atom_t>();
    };
}

void X11Pasteboard::clear()
{
    own({});
}

// The key that began the paste has been handled before any request that it provokes. Who hears of a
// new owner asks for the list of forms, paste or not; so an owner we become only if we are none.
// Then the paste may have been answered already, by another owner or by none, and nobody waits.
void X11Pasteboard::holdPaste(std::chrono::milliseconds limit)
{
    const bool ours = offer() != nullptr;
    const X11Client program = clientInFront();
    ++changes;
    if (ours)
        replaceUnannounced({});
    else
        announce(std::make_shared<const ClipboardContent>());
    if (program.base == 0 || program.base == toolkit.base)
        held.drop();
    else
        held.begin(program, ours, limit);
}

void X11Pasteboard::releasePaste(std::function<void(bool taken)> handler)
{
    held.release(std::move(handler));
}

X11Client X11Pasteboard::clientOf(xcb_window_t window) const
{
    const std::uint32_t mask = xcb_get_setup(session.connection())->resource_id_mask;
    return {window & ~mask, mask};
}

// None if no certain window has the keyboard.
X11Client X11Pasteboard::clientInFront() const
{
    const auto reply = owned(xcb_get_input_focus_reply(
        session.connection(), xcb_get_input_focus(session.connection()), nullptr));
    const bool isCertain = reply && reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT;
    return isCertain ? clientOf(reply->focus) : X11Client();
}

void X11Pasteboard::writeFiles(const Files& files)
{
    own(files.empty() ? ClipboardContent() : ClipboardContent(files));
}

void X11Pasteboard::writeText(const std::string& text)
{
    own(text);
}

Files X11Pasteboard::readFiles() const
{
    constexpr std::array<std::string_view, 2> forms{
        "text/uri-list", "x-special/gnome-copied-files"};
    const xcb_window_t owner = currentOwner(clipboard);
    if (owner == XCB_NONE || toolkit.has(owner))
        return {};
    if (owner == session.window()) {
        const Offer own = offer();
        const auto* files = own ? std::get_if<Files>(own->content.get()) : nullptr;
        return files ? *files : Files();
    }
    const auto list = readClipboard(session.displayName(), forms, readLimit);
    return list ? posix::localFiles(*list) : Files();
}

std::int64_t X11Pasteboard::changeCount() const
{
    return changes;
}

bool X11Pasteboard::handOver(std::chrono::milliseconds limit)
{
    const Deadline end = std::chrono::steady_clock::now() + std::min(limit, longestHandOver);
    held.drop();
    const Offer own = offer();
    const xcb_window_t manager =
        own ? currentOwner(session.atom("CLIPBOARD_MANAGER")) : xcb_window_t(XCB_NONE);
    if (manager == XCB_NONE)
        return false;
    if (std::holds_alternative<std::monostate>(*own->content))
        showEmptinessTo(manager, end);
    return std::holds_alternative<std::string>(*own->content) && askManagerToSave(*own, end);
}

// The program whose paste is held would ask for what it hears of, and be taken for pasting.
void X11Pasteboard::own(ClipboardContent content)
{
    ++changes;
    unannounced = held.isOpen() && offer() && currentOwner(clipboard) == session.window();
    if (unannounced)
        replaceUnannounced(std::move(content));
    else
        announce(std::make_shared<const ClipboardContent>(std::move(content)));
}

// Owning it anew with each change tells clipboard managers and open paste menus of the change.
void X11Pasteboard::announce(std::shared_ptr<const ClipboardContent> content)
{
    const Offer before = offer();
    const xcb_timestamp_t now = session.serverTime();
    const auto request =
        xcb_set_selection_owner(session.connection(), session.window(), clipboard, now);
    writtenBy = request.sequence;
    if (currentOwner(clipboard) != session.window()) {
        setOffer(nullptr);
        return;
    }
    setOffer(std::make_shared<const ClipboardOffer>(
        ClipboardOffer{std::move(content), before ? before->ownedSince : now, now}));
}

// While we own it.
void X11Pasteboard::replaceUnannounced(ClipboardContent content)
{
    ClipboardOffer next = *offer();
    next.content = std::make_shared<const ClipboardContent>(std::move(content));
    setOffer(std::make_shared<const ClipboardOffer>(std::move(next)));
}

void X11Pasteboard::announceLate()
{
    const Offer current = offer();
    if (std::exchange(unannounced, false) && current)
        announce(current->content);
}

X11Pasteboard::Offer X11Pasteboard::offer() const
{
    const std::scoped_lock lock(offerMutex);
    return currentOffer;
}

void X11Pasteboard::setOffer(Offer next)
{
    const bool same = next && currentOffer && next->content == currentOffer->content;
    if (fileTransfers && !same)
        fileTransfers->contentChanged();
    const std::scoped_lock lock(offerMutex);
    currentOffer = std::move(next);
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

// The loss is told before the change of the owner is, and what ends with it asks for the count.
void X11Pasteboard::noteLoss(const X11Event& event)
{
    if (event.as<xcb_selection_clear_event_t>().selection != clipboard)
        return;
    const Offer current = offer();
    if (!isBefore(event.sequence(), writtenBy)) {
        setOffer(nullptr);
        ++changes;
        held.lose();
    } else if (current) { // we have become the owner again since then
        ClipboardOffer interrupted = *current;
        interrupted.ownedSince = interrupted.writtenAt;
        setOffer(std::make_shared<const ClipboardOffer>(std::move(interrupted)));
    }
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
    transfers.forget(request.requestor, request.property);
    if (toolkit.has(request.requestor))
        return;
    if (!held.take(request))
        respond(request, offer().get());
}

bool X11Pasteboard::respond(
    const xcb_selection_request_event_t& request, const ClipboardOffer* current)
{
    if (current && isForTransfer(request, *current)) {
        fileTransfers->answer(request, *current->content);
        return true;
    }
    if (!answers.answer(request, current))
        return false;
    const ClipboardContent& content = *current->content;
    if (std::holds_alternative<Files>(content) && answers.isForContent(request, content))
        tellIfTaken(request);
    return true;
}

void X11Pasteboard::tellIfTaken(const xcb_selection_request_event_t& request) const
{
    if (onTaken && clientInFront().has(request.requestor))
        onTaken();
}

// The paste may be older than our owning the clipboard, if that was interrupted.
bool X11Pasteboard::giveHeld(const xcb_selection_request_event_t& request)
{
    const Offer current = offer();
    if (!current)
        return respond(request, nullptr);
    ClipboardOffer asked = *current;
    asked.ownedSince = request.time;
    return respond(request, &asked);
}

bool X11Pasteboard::isForTransfer(
    const xcb_selection_request_event_t& request, const ClipboardOffer& current) const
{
    return fileTransfers && request.target == session.atom(TransferAnswers::form)
        && answers.mayAsk(request, current) && fileTransfers->offers(*current.content);
}

void X11Pasteboard::answerToolkit(const X11Client& client, const X11Event& event)
{
    if (event.type() != XCB_SELECTION_REQUEST)
        return;
    const auto& request = event.as<xcb_selection_request_event_t>();
    if (client.has(request.requestor))
        toolkitAnswers.answer(request, offer().get());
}

// A transfer bit by bit would need the main queue.
bool X11Pasteboard::sendWhole(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& bytes)
{
    constexpr std::size_t requestHeader = 64;
    const std::size_t longest =
        std::size_t(xcb_get_maximum_request_length(session.connection())) * 4;
    if (bytes.size() + requestHeader > longest)
        return false;
    xcb_change_property(
        session.connection(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
        std::uint32_t(bytes.size()), bytes.data());
    return true;
}

// A manager that has not seen the emptiness brings back what was there before as soon as we are
// gone. It reads one form after the other and does not say when it has done, so it is done when it
// has fallen silent. Owning the clipboard anew makes it begin.
void X11Pasteboard::showEmptinessTo(xcb_window_t manager, Deadline end)
{
    const X11Client reader = clientOf(manager);
    int questions = 0;
    const auto counting = session.watchOnMain([&](const X11Event& event) {
        if (event.type() == XCB_SELECTION_REQUEST
            && reader.has(event.as<xcb_selection_request_event_t>().requestor))
            ++questions;
    });
    own({});
    const auto asksWithin = [&](std::chrono::milliseconds time) {
        const int seen = questions;
        return session.handleUntil([&] { return questions > seen; }, time);
    };
    bool reads = asksWithin(std::min(managerBegins, timeTo(end)));
    while (reads && timeTo(end) > 0ms)
        reads = asksWithin(std::min(managerGoesOn, timeTo(end)));
}

// The manager reads the content from us meanwhile, so requests are answered while we wait.
bool X11Pasteboard::askManagerToSave(const ClipboardOffer& own, Deadline end)
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
    putValues(session, session.window(), property, XCB_ATOM_ATOM, answers.forms(*own.content));
    xcb_convert_selection(
        session.connection(), session.window(), session.atom("CLIPBOARD_MANAGER"), saveTargets,
        property, own.writtenAt);
    xcb_flush(session.connection());
    session.handleUntil([&] { return saved.has_value(); }, timeTo(end));
    return saved.value_or(false);
}

} // namespace tallowbay::x11
