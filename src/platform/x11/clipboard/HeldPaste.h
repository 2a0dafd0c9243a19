#pragma once

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/x11/clipboard/SelectionAnswers.h"

namespace tallowbay::x11 {

// The windows of one connection.
struct X11Client {
    std::uint32_t base = 0;
    std::uint32_t mask = 0;

    bool has(xcb_window_t window) const { return base != 0 && (window & ~mask) == base; }
};

// A paste whose content is still to come, in the program that has the keyboard: what the program
// has asked for, and what becomes of that. It ends when the program has got it or is not going to
// ask any more.
//
// Thread: main queue.
class HeldPaste {
public:
    using Request = xcb_selection_request_event_t;

    // Gives what the clipboard holds now; false where that is nothing.
    using Give = std::function<bool(const Request&)>;

    // `ended` is called when one has ended, before the handler of its release.
    HeldPaste(SelectionAnswers&, Dispatch&, Give, Task ended);

    // What is asked for may wait, or else it is refused: where it is not known whose question it
    // is. A paste that is held already is over, and of both nothing may wait.
    void begin(const X11Client&, bool mayWait, std::chrono::milliseconds limit);

    // The content is there; the handler is told, once, whether the program has got it.
    void release(std::function<void(bool taken)>);

    // Whoever waits is refused. What was released is told nothing.
    void drop();

    // Whoever waits is refused, and what was released is told so.
    void lose() { end(false); }

    // Whether what the program asks for would still be taken for the paste.
    bool isOpen() const { return stage == Stage::waits || stage == Stage::gives; }

    // Whether the request belongs to it, and is dealt with.
    bool take(const Request&);

private:
    enum class Stage { none, waits, gives, refuses };

    bool tellForms(const Request&);
    bool pastes(const Request&) const;
    void giveOrRefuse(const std::vector<Request>&);
    bool refuseWaiting();
    void endAfter(std::chrono::milliseconds, Task);
    void limitIsOver();
    void refuseForAWhile();
    void end(bool taken);

    SelectionAnswers& answers;
    Dispatch& dispatch;
    const Give give;
    const Task ended;
    X11Client program;
    Stage stage = Stage::none;
    bool hasRefused = false;
    std::vector<Request> waiting;
    std::function<void(bool)> released;
    int lastTimer = 0;
    Lifetime lifetime;
};

} // namespace tallowbay::x11
