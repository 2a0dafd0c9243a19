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

void X11Pasteboard::answerOwnToolkit(std::uint32_t resourceBase, std::uint32_t resourceMask)
{
    toolkit = {resourceBase, resourceMask};
    toolkitEvents = session.watchOnThread(
        [this, client = toolkit](const X11Event& event) { answerToolkit(client, event); });
}

void X11Pasteboard::offerTransfers(FileTransfer& transfer)
{
    fileTransfers.emplace(answers, dispatch, transfer);
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
void X11Pasteboard::holdPaste(std::chrono::milliseconds limit)
{
    const bool another = heldPaste.has_value();
    const bool ours = offer() != nullptr;
    if (ours)
        empty();
    else
        own({}); // the paste may have been answered already, by another owner or by none
    refuseHeldPaste();
    const Client program = clientInFront();
    if (!ours || another || program.base == 0 || program.base == toolkit.base)
        return;
    heldPaste = HeldPaste{program, {}};
    dispatch.mainAfter(limit, lifetime.guard([this, number = ++lastHeldPaste] {
        if (number == lastHeldPaste)
            refuseHeldPaste();
    }));
}

bool X11Pasteboard::releasePaste()
{
    const auto paste = std::exchange(heldPaste, std::nullopt);
    if (!paste)
        return false;
    const Offer current = offer();
    bool given = false;
    for (const auto& request : paste->requests) {
        const auto asked = current ? std::optional(askedOf(*current, request)) : std::nullopt;
        given |= answers.answer(request, asked ? &*asked : nullptr);
    }
    return given;
}

// A held paste is older than the content that it waits for, and if another owner came between the
// two, than our owning the clipboard.
ClipboardOffer X11Pasteboard::askedOf(
    ClipboardOffer offer, const xcb_selection_request_event_t& request)
{
    offer.ownedSince = request.time;
    return offer;
}

// Whatever the clipboard holds by now.
void X11Pasteboard::refuseHeldPaste()
{
    const ClipboardOffer nothing{std::make_shared<const ClipboardContent>()};
    const auto paste = std::exchange(heldPaste, std::nullopt);
    if (!paste)
        return;
    for (const auto& request : paste->requests)
        answers.answer(request, &nothing);
}

X11Pasteboard::Client X11Pasteboard::clientOf(xcb_window_t window) const
{
    const std::uint32_t mask = xcb_get_setup(session.connection())->resource_id_mask;
    return {window & ~mask, mask};
}

// None if no certain window has the keyboard.
X11Pasteboard::Client X11Pasteboard::clientInFront() const
{
    const auto reply = owned(xcb_get_input_focus_reply(
        session.connection(), xcb_get_input_focus(session.connection()), nullptr));
    const bool isCertain = reply && reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT;
    return isCertain ? clientOf(reply->focus) : Client();
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
    const Offer own = offer();
    const xcb_window_t manager =
        own ? currentOwner(session.atom("CLIPBOARD_MANAGER")) : xcb_window_t(XCB_NONE);
    if (manager == XCB_NONE)
        return false;
    if (std::holds_alternative<std::monostate>(*own->content))
        showEmptinessTo(manager, std::min(limit, longestHandOver));
    return std::holds_alternative<std::string>(*own->content)
        && askManagerToSave(*own, std::min(limit, longestHandOver));
}

// Owning it anew with each change tells clipboard managers and open paste menus of the change.
void X11Pasteboard::own(ClipboardContent content)
{
    ++changes;
    const Offer before = offer();
    const xcb_timestamp_t now = session.serverTime();
    const auto request =
        xcb_set_selection_owner(session.connection(), session.window(), clipboard, now);
    writtenBy = request.sequence;
    if (currentOwner(clipboard) != session.window()) {
        setOffer(nullptr);
        return;
    }
    setOffer(std::make_shared<const ClipboardOffer>(ClipboardOffer{
        std::make_shared<const ClipboardContent>(std::move(content)),
        before ? before->ownedSince : now, now}));
}

// Without a word to anyone.
void X11Pasteboard::empty()
{
    ++changes;
    ClipboardOffer nothing = *offer();
    nothing.content = std::make_shared<const ClipboardContent>();
    setOffer(std::make_shared<const ClipboardOffer>(std::move(nothing)));
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

void X11Pasteboard::noteLoss(const X11Event& event)
{
    if (event.as<xcb_selection_clear_event_t>().selection != clipboard)
        return;
    const Offer current = offer();
    if (!isBefore(event.sequence(), writtenBy)) {
        setOffer(nullptr);
        refuseHeldPaste();
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
    if (heldPaste && heldPaste->program.has(request.requestor))
        hold(request);
    else
        respond(request);
}

void X11Pasteboard::respond(const xcb_selection_request_event_t& request)
{
    const Offer current = offer();
    if (current && isForTransfer(request, *current))
        fileTransfers->answer(request, *current->content);
    else
        answers.answer(request, current.get());
}

bool X11Pasteboard::isForTransfer(
    const xcb_selection_request_event_t& request, const ClipboardOffer& current) const
{
    return fileTransfers && request.target == session.atom(TransferAnswers::form)
        && answers.mayAsk(request, current) && fileTransfers->offers(*current.content);
}

// That there will be files is known. Only who asks for them is pasting; many programs ask for the
// forms as soon as they hear of a change.
void X11Pasteboard::hold(const xcb_selection_request_event_t& request)
{
    const ClipboardOffer files =
        askedOf({std::make_shared<const ClipboardContent>(Files())}, request);
    const auto forms = answers.forms(*files.content);
    const bool isForFiles = request.target == session.atom("MULTIPLE")
        || std::ranges::find(forms, request.target) != forms.end();
    if (request.target == session.atom("TARGETS"))
        answers.answer(request, &files);
    else if (isForFiles && answers.mayAsk(request, files))
        heldPaste->requests.push_back(request);
    else
        answers.answer(request, offer().get());
}

void X11Pasteboard::answerToolkit(const Client& client, const X11Event& event)
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
void X11Pasteboard::showEmptinessTo(xcb_window_t manager, std::chrono::milliseconds limit)
{
    const Client reader = clientOf(manager);
    int questions = 0;
    const auto counting = session.watchOnMain([&](const X11Event& event) {
        if (event.type() == XCB_SELECTION_REQUEST
            && reader.has(event.as<xcb_selection_request_event_t>().requestor))
            ++questions;
    });
    own({});
    const auto remaining = [end = std::chrono::steady_clock::now() + limit] {
        return std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    };
    const auto asksWithin = [&](std::chrono::milliseconds time) {
        const int seen = questions;
        return session.handleUntil([&] { return questions > seen; }, time);
    };
    bool reads = asksWithin(std::min(managerBegins, remaining()));
    while (reads && remaining() > 0ms)
        reads = asksWithin(std::min(managerGoesOn, remaining()));
}

// The manager reads the content from us meanwhile, so requests are answered while we wait.
bool X11Pasteboard::askManagerToSave(const ClipboardOffer& own, std::chrono::milliseconds limit)
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
    session.handleUntil([&] { return saved.has_value(); }, limit);
    return saved.value_or(false);
}

} // namespace tallowbay::x11
