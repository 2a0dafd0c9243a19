#pragma once

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/FileTransfer.h"
#include "platform/x11/clipboard/SelectionAnswers.h"

#include <map>

namespace tallowbay::x11 {

// Answers requests for files as a key of the desktop's file transfer. It is made when it is asked
// for first, so these answers come later than all others, and holds as long as the content stands.
//
// Thread: main queue.
class TransferAnswers {
public:
    static constexpr std::string_view form = "application/vnd.portal.filetransfer";

    // A requestor that gets no answer for long thinks that we hang, however long others have
    // waited.
    static constexpr std::chrono::milliseconds patience{1500};

    TransferAnswers(SelectionAnswers&, Dispatch&, FileTransfer&);

    // Told of each request that was given a key. Optional.
    std::function<void(const xcb_selection_request_event_t&)> onGiven;

    // Whether the content can be had in this form now.
    bool offers(const ClipboardContent&) const;

    // Answers once the key is there, and refuses where there is none in time. The content has been
    // the same, and is offered, since contentChanged().
    void answer(const xcb_selection_request_event_t&, const ClipboardContent&);

    // Nothing of what was there can be had any more.
    void contentChanged();

private:
    using Requests = std::map<int, xcb_selection_request_event_t>; // in their order

    void wait(const xcb_selection_request_event_t&);
    void askForKey(const FileTransfer::Files&);
    void take(const std::optional<std::string>& newKey);
    void answerWaiting();
    void answerNow(const xcb_selection_request_event_t&);

    SelectionAnswers& answers;
    Dispatch& dispatch;
    FileTransfer& transfer;
    std::optional<std::string> key; // to the content
    bool asking = false;
    int content = 0; // a number for each
    Requests waiting;
    int lastRequest = 0;
    Lifetime lifetime;
};

} // namespace tallowbay::x11
