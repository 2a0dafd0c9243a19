#pragma once

#include "platform/Dispatch.h"
#include "platform/x11/X11Event.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace tallowbay::x11 {

// One connection to the X server, and one thread that takes its events.
//
// All who must agree on what came first share a session. Every event is shown on the thread to the
// watchers of the thread, and then, if it concerns windows or selections, handed over to the main
// queue. So whatever a thread watcher posts to the main queue runs before the events that came
// after its own are handled there. In particular a key press that makes another program ask for the
// clipboard reaches us before the request (the server sends it first), and what it set in motion on
// the main queue is done before the request is answered there.
//
// Requests may be made from any thread. After the server has gone away all of them do nothing, and
// replies are null.
//
// Thread: created, used and destroyed on the main queue, unless a member says otherwise.
class X11Session {
public:
    using Watcher = std::function<void(const X11Event&)>;

    struct Created {
        std::unique_ptr<X11Session> session; // null if it failed
        std::string problem; // for people; empty if it did not
    };

    // Connects to a display, by default that of the environment; fails where there is none, or one
    // without the extensions for selections and keyboards. The lost handler is called once, on the
    // main queue, if the server goes away later.
    static Created create(Dispatch&, std::function<void()> lost, const std::string& display = {});
    ~X11Session();

    // Any thread.
    xcb_connection_t* connection() const { return server; }
    const std::string& displayName() const { return name; }
    xcb_window_t root() const { return rootWindow; }

    // A window of our own that is never shown, for selections and properties.
    xcb_window_t window() const { return ownWindow; }

    // Whether other programs' keys can be seen (XInput 2.2), and keys be typed (XTEST).
    bool seesKeys() const { return inputOpcode != 0; }
    bool typesKeys() const { return hasTest; }

    // The numbers by which the server knows the extensions' events.
    std::uint8_t inputExtension() const { return inputOpcode; }
    std::uint8_t keyboardEvent() const { return firstKeyboardEvent; }
    std::uint8_t selectionEvent() const { return firstFixesEvent; }

    // Any thread. XCB_ATOM_NONE only after the server has gone.
    xcb_atom_t atom(std::string_view name);

    // The server's time now; a round trip, on any thread but the session's own. XCB_CURRENT_TIME if
    // the server does not answer within a second.
    xcb_timestamp_t serverTime();

    // Sees every event, on the session's thread, which it must not hold up. When the token has
    // ended the watcher does not run any more.
    Subscription watchOnThread(Watcher);

    // Sees the events that concern windows and selections, on the main queue.
    Subscription watchOnMain(Watcher);

    // Handles events of the main queue in place, until the condition holds (true) or for the limit
    // (false), for a caller that must wait for one. Other tasks of the main queue do not run.
    bool handleUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

private:
    using Watchers = std::map<int, Watcher>; // in the order of their registration

    struct Letter {
        std::uint64_t number;
        X11Event event;
    };

    X11Session(Dispatch&, std::function<void()> lost, const std::string& display);
    std::string prepare();
    std::string prepareExtensions();
    std::uint16_t extensionOpcode(xcb_extension_t&) const;
    void makeWindow();
    void run();
    void show(const X11Event&);
    void noteTime(const X11Event&);
    bool concernsMain(const X11Event&) const;
    void handToMain(const X11Event&);
    void handleUpTo(std::uint64_t number);
    std::optional<X11Event> nextLetter(std::uint64_t lastNumber);
    void showOnMain(const X11Event&);
    void tellLost();

    Dispatch& dispatch;
    std::function<void()> lost;
    std::string name;
    xcb_connection_t* server = nullptr;
    xcb_window_t rootWindow = XCB_NONE;
    xcb_window_t ownWindow = XCB_NONE;
    xcb_atom_t timeProperty = XCB_ATOM_NONE;
    std::uint8_t inputOpcode = 0;
    std::uint8_t firstKeyboardEvent = 0;
    std::uint8_t firstFixesEvent = 0;
    bool hasTest = false;

    std::mutex atomMutex;
    std::map<std::string, xcb_atom_t, std::less<>> atoms;

    std::mutex watcherMutex; // held while the watchers of the thread run
    Watchers threadWatchers;
    Watchers mainWatchers; // main queue only
    int lastWatcher = 0;

    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    std::deque<Letter> inbox;
    std::uint64_t lastLetter = 0;
    std::optional<std::uint32_t> timeSequence;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    bool ended = false;

    // Tasks that still wait on the main queue when the session is gone do nothing.
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
    std::thread thread;
};

} // namespace tallowbay::x11
