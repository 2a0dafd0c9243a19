#include "platform/x11/clipboard/HeldPaste.h"

#include <utility>

namespace tallowbay::x11 {

namespace {

using Files = std::vector<std::filesystem::path>;

// A program that is told that there is nothing asks for another form of it before that is over, or
// shows a dialog, which has the keyboard then.
constexpr std::chrono::milliseconds timeToSaySo{300};

// The paste is older than the content, and if another owner came between the two, than our owning
// the clipboard.
ClipboardOffer filesFor(const xcb_selection_request_event_t& request)
{
    return {std::make_shared<const ClipboardContent>(Files()), request.time};
}

} // namespace

HeldPaste::HeldPaste(SelectionAnswers& answers, Dispatch& dispatch, Give give, Task ended)
    : answers(answers)
    , dispatch(dispatch)
    , give(std::move(give))
    , ended(std::move(ended))
{
}

void HeldPaste::begin(const X11Client& client, bool mayWait, std::chrono::milliseconds limit)
{
    const bool another = stage != Stage::none;
    hasRefused = refuseWaiting();
    released = nullptr;
    program = client;
    stage = mayWait && !another ? Stage::waits : Stage::refuses;
    endAfter(limit, [this] { limitIsOver(); });
}

void HeldPaste::release(std::function<void(bool taken)> handler)
{
    released = std::move(handler);
    if (stage == Stage::none)
        end(false);
    if (stage != Stage::waits)
        return;
    stage = Stage::gives;
    if (!waiting.empty())
        giveOrRefuse(std::exchange(waiting, {}));
}

void HeldPaste::drop()
{
    released = nullptr;
    end(false);
}

bool HeldPaste::take(const Request& request)
{
    if (stage == Stage::none || !program.has(request.requestor))
        return false;
    if (!pastes(request))
        return stage == Stage::waits && tellForms(request);
    waiting.push_back(request);
    if (stage == Stage::gives)
        giveOrRefuse(std::exchange(waiting, {}));
    else if (stage == Stage::refuses)
        hasRefused = refuseWaiting();
    return true;
}

// That there will be files is known.
bool HeldPaste::tellForms(const Request& request)
{
    if (!answers.isForForms(request))
        return false;
    const ClipboardOffer files = filesFor(request);
    answers.answer(request, &files);
    return true;
}

// Only who asks for the files is pasting; many programs ask for the list of forms as soon as they
// hear of a change.
bool HeldPaste::pastes(const Request& request) const
{
    const ClipboardOffer files = filesFor(request);
    return answers.mayAsk(request, files) && answers.isForContent(request, *files.content);
}

void HeldPaste::giveOrRefuse(const std::vector<Request>& requests)
{
    bool given = false;
    for (const Request& request : requests)
        given |= give(request);
    if (given)
        end(true);
    else
        refuseForAWhile();
}

// Whether there were any.
bool HeldPaste::refuseWaiting()
{
    const auto requests = std::exchange(waiting, {});
    for (const Request& request : requests)
        answers.answer(request, nullptr);
    return !requests.empty();
}

void HeldPaste::endAfter(std::chrono::milliseconds time, Task over)
{
    dispatch.mainAfter(time, lifetime.guard([this, number = ++lastTimer, over = std::move(over)] {
        if (number == lastTimer)
            over();
    }));
}

void HeldPaste::limitIsOver()
{
    hasRefused |= refuseWaiting();
    if (hasRefused)
        refuseForAWhile();
    else
        end(false);
}

void HeldPaste::refuseForAWhile()
{
    stage = Stage::refuses;
    endAfter(timeToSaySo, [this] { end(false); });
}

void HeldPaste::end(bool taken)
{
    refuseWaiting();
    stage = Stage::none;
    ++lastTimer;
    const auto handler = std::exchange(released, nullptr);
    ended();
    if (handler)
        handler(taken);
}

} // namespace tallowbay::x11
