#include "platform/x11/X11Session.h"

#include <utility>

#include <sys/socket.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace tallowbay::x11 {

namespace {

using namespace std::chrono_literals;

constexpr auto serverPatience = 1s;

xcb_screen_t* screenOf(xcb_connection_t* connection, int number)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (screens.rem > 1 && number-- > 0)
        xcb_screen_next(&screens);
    return screens.data;
}

} // namespace

X11Session::Created X11Session::create(
    Dispatch& dispatch, std::function<void()> lost, const std::string& display)
{
    std::unique_ptr<X11Session> session(new X11Session(dispatch, std::move(lost), display));
    std::string problem = session->prepare();
    if (!problem.empty())
        return {nullptr, std::move(problem)};
    session->thread = std::thread([&session = *session] { session.run(); });
    return {std::move(session), {}};
}

X11Session::X11Session(Dispatch& dispatch, std::function<void()> lost, const std::string& display)
    : dispatch(dispatch)
    , lost(std::move(lost))
    , name(display)
{
}

X11Session::~X11Session()
{
    if (thread.joinable()) {
        {
            const std::scoped_lock lock(mutex);
            ended = true;
        }
        // The thread wakes up by it, and no answer of the server is needed. What was sent so far
        // still arrives.
        xcb_flush(server);
        shutdown(xcb_get_file_descriptor(server), SHUT_RDWR);
        thread.join();
    }
    alive.reset();
    xcb_disconnect(server);
}

// Empty, or what is missing.
std::string X11Session::prepare()
{
    int screenNumber = 0;
    server = xcb_connect(name.empty() ? nullptr : name.c_str(), &screenNumber);
    if (xcb_connection_has_error(server) != 0)
        return "There is no X server to connect to";
    rootWindow = screenOf(server, screenNumber)->root;
    if (std::string problem = prepareExtensions(); !problem.empty())
        return problem;
    makeWindow();
    return xcb_connection_has_error(server) != 0 ? "The X server went away" : "";
}

std::string X11Session::prepareExtensions()
{
    const auto* fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    const auto fixesVersion = fixes && fixes->present ? owned(xcb_xfixes_query_version_reply(
                                  server, xcb_xfixes_query_version(server, 5, 0), nullptr))
                                                      : nullptr;
    if (!fixesVersion)
        return "The X server lacks the XFIXES extension";
    firstFixesEvent = fixes->first_event;

    if (!xkb_x11_setup_xkb_extension(
            server, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstKeyboardEvent, nullptr))
        return "The X server lacks the XKEYBOARD extension";

    const auto* test = xcb_get_extension_data(server, &xcb_test_id);
    hasTest = test && test->present;

    const auto* input = xcb_get_extension_data(server, &xcb_input_id);
    // A client of an older version sees no raw key while another one has grabbed the keyboard.
    const auto inputVersion = input && input->present ? owned(xcb_input_xi_query_version_reply(
                                  server, xcb_input_xi_query_version(server, 2, 2), nullptr))
                                                      : nullptr;
    if (inputVersion
        && std::pair(inputVersion->major_version, inputVersion->minor_version)
            >= std::pair<std::uint16_t, std::uint16_t>(2, 2))
        inputOpcode = input->major_opcode;
    return {};
}

void X11Session::makeWindow()
{
    timeProperty = atom("TALLOWBAY_TIME");
    ownWindow = xcb_generate_id(server);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(
        server, 0, ownWindow, rootWindow, -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_flush(server);
}

xcb_atom_t X11Session::atom(std::string_view atomName)
{
    const std::scoped_lock lock(atomMutex);
    if (const auto known = atoms.find(atomName); known != atoms.end())
        return known->second;
    const auto reply = owned(xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 0, std::uint16_t(atomName.size()), atomName.data()),
        nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return atoms.emplace(atomName, reply->atom).first->second;
}

xcb_timestamp_t X11Session::serverTime()
{
    const auto request = xcb_change_property(
        server, XCB_PROP_MODE_APPEND, ownWindow, timeProperty, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(server);
    std::unique_lock lock(mutex);
    const bool told = changed.wait_for(lock, serverPatience, [&] {
        return ended || (timeSequence && !isBefore(*timeSequence, request.sequence));
    });
    return told && !ended ? time : XCB_CURRENT_TIME;
}

Subscription X11Session::watchOnThread(Watcher watcher)
{
    const std::scoped_lock lock(watcherMutex);
    const int number = ++lastWatcher;
    threadWatchers.emplace(number, std::move(watcher));
    return Subscription([this, number] {
        const std::scoped_lock endLock(watcherMutex);
        threadWatchers.erase(number);
    });
}

Subscription X11Session::watchOnMain(Watcher watcher)
{
    const int number = ++lastWatcher;
    mainWatchers.emplace(number, std::move(watcher));
    return Subscription([this, number] { mainWatchers.erase(number); });
}

bool X11Session::handleUntil(
    const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        std::uint64_t newest = 0;
        {
            std::unique_lock lock(mutex);
            changed.wait_until(lock, end, [this] { return ended || !inbox.empty(); });
            if (inbox.empty())
                return condition();
            newest = inbox.front().number;
        }
        handleUpTo(newest);
        if (std::chrono::steady_clock::now() >= end)
            return condition();
    }
    return true;
}

void X11Session::run()
{
    while (auto* event = xcb_wait_for_event(server))
        show(X11Event(event));
    tellLost();
}

void X11Session::show(const X11Event& event)
{
    // An error tells of a window that went away while we dealt with it: nobody needs to know.
    if (event.type() == 0)
        return;
    noteTime(event);
    {
        const std::scoped_lock lock(watcherMutex);
        for (const auto& [number, watcher] : threadWatchers)
            watcher(event);
    }
    if (concernsMain(event))
        handToMain(event);
}

void X11Session::noteTime(const X11Event& event)
{
    if (event.type() != XCB_PROPERTY_NOTIFY)
        return;
    const auto& property = event.as<xcb_property_notify_event_t>();
    if (property.window != ownWindow || property.atom != timeProperty)
        return;
    const std::scoped_lock lock(mutex);
    timeSequence = event.sequence();
    time = property.time;
    changed.notify_all();
}

bool X11Session::concernsMain(const X11Event& event) const
{
    if (event.type() == XCB_PROPERTY_NOTIFY)
        return event.as<xcb_property_notify_event_t>().atom != timeProperty;
    return event.type() != XCB_GE_GENERIC && event.type() != firstKeyboardEvent
        && event.type() != XCB_MAPPING_NOTIFY;
}

void X11Session::handToMain(const X11Event& event)
{
    std::uint64_t number = 0;
    {
        const std::scoped_lock lock(mutex);
        number = ++lastLetter;
        inbox.push_back({number, event});
        changed.notify_all();
    }
    dispatch.mainAsync([this, number, stillThere = std::weak_ptr(alive)] {
        if (stillThere.lock())
            handleUpTo(number);
    });
}

// Never beyond the number: a later event must wait for the tasks that were posted before it.
void X11Session::handleUpTo(std::uint64_t number)
{
    const std::weak_ptr stillThere(alive);
    while (!stillThere.expired()) {
        const auto event = nextLetter(number);
        if (!event)
            return;
        showOnMain(*event);
    }
}

std::optional<X11Event> X11Session::nextLetter(std::uint64_t lastNumber)
{
    const std::scoped_lock lock(mutex);
    if (inbox.empty() || inbox.front().number > lastNumber)
        return std::nullopt;
    const X11Event event = inbox.front().event;
    inbox.pop_front();
    return event;
}

void X11Session::showOnMain(const X11Event& event)
{
    const std::weak_ptr stillThere(alive);
    int number = 0;
    // A watcher may end itself, another one, or the session.
    while (!stillThere.expired()) {
        const auto next = mainWatchers.upper_bound(number);
        if (next == mainWatchers.end())
            return;
        number = next->first;
        const Watcher watcher = next->second;
        watcher(event);
    }
}

void X11Session::tellLost()
{
    {
        const std::scoped_lock lock(mutex);
        if (ended)
            return;
        ended = true;
        changed.notify_all();
    }
    dispatch.mainAsync([this, stillThere = std::weak_ptr(alive)] {
        if (!stillThere.lock())
            return;
        if (const auto tell = std::exchange(lost, nullptr))
            tell();
    });
}

} // namespace tallowbay::x11
