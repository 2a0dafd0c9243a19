#include "platform/x11/clipboard/TransferAnswers.h"

#include <utility>

namespace tallowbay::x11 {

using Files = FileTransfer::Files;

TransferAnswers::TransferAnswers(
    SelectionAnswers& answers, Dispatch& dispatch, FileTransfer& transfer)
    : answers(answers)
    , dispatch(dispatch)
    , transfer(transfer)
{
}

bool TransferAnswers::offers(const ClipboardContent& content) const
{
    return std::holds_alternative<Files>(content) && transfer.available();
}

void TransferAnswers::answer(
    const xcb_selection_request_event_t& request, const ClipboardContent& content)
{
    if (key) {
        answerNow(request);
        return;
    }
    wait(request);
    if (!std::exchange(asking, true))
        askForKey(std::get<Files>(content));
}

void TransferAnswers::wait(const xcb_selection_request_event_t& request)
{
    const int number = ++lastRequest;
    waiting.emplace(number, request);
    dispatch.mainAfter(patience, lifetime.guard([this, number] {
        if (const auto late = waiting.extract(number))
            answerNow(late.mapped());
    }));
}

void TransferAnswers::askForKey(const Files& files)
{
    transfer.begin(files, lifetime.guard([this, asked = content](const auto& newKey) {
        if (asked == content)
            take(newKey);
        else if (newKey)
            transfer.end(*newKey);
    }));
}

void TransferAnswers::take(const std::optional<std::string>& newKey)
{
    asking = false;
    key = newKey;
    answerWaiting();
}

void TransferAnswers::answerWaiting()
{
    for (const auto& [number, request] : std::exchange(waiting, {}))
        answerNow(request);
}

// With what there is.
void TransferAnswers::answerNow(const xcb_selection_request_event_t& request)
{
    const auto given = key ? std::optional(ClipboardForm{form, *key}) : std::nullopt;
    if (answers.answerLate(request, given) && onGiven)
        onGiven(request);
}

void TransferAnswers::contentChanged()
{
    if (key)
        transfer.end(*key);
    key.reset();
    asking = false;
    ++content;
    answerWaiting();
}

} // namespace tallowbay::x11
