#pragma once

#include "platform/Pasteboard.h"
#include "platform/x11/clipboard/HeldPaste.h"
#include "platform/x11/clipboard/SelectionAnswers.h"
#include "platform/x11/clipboard/SelectionTransfers.h"
#include "platform/x11/clipboard/TransferAnswers.h"

namespace tallowbay::x11 {

// The clipboard of an X11 session, as the owner of its CLIPBOARD selection.
//
// Requests are answered on the main queue, in their order among all other events of the session: a
// handler that a key press set off there changes the content before the paste that the same key
// press caused reads it.
class X11Pasteboard : public Pasteboard {
public:
    X11Pasteboard(X11Session&, Dispatch&);
    ~X11Pasteboard() override;

    // The windows of another connection of this process, a toolkit's. When such a one asks, the
    // toolkit keeps the main thread waiting for the answer; so it is answered on the session's
    // thread. It owns no files itself, and is not asked for any.
    void answerOwnToolkit(std::uint32_t resourceBase, std::uint32_t resourceMask);

    // From now on files are offered by way of the desktop's file transfer, too. It outlives this
    // object.
    void offerTransfers(FileTransfer&);

    void clear() override;
    void holdPaste(std::chrono::milliseconds limit) override;
    void releasePaste(std::function<void(bool taken)>) override;
    void dropPaste() override { held.drop(); }
    void writeFiles(const std::vector<std::filesystem::path>&) override;
    void tellWhenFilesAreTaken(std::function<void()> taken) override { onTaken = std::move(taken); }
    void writeText(const std::string&) override;
    std::vector<std::filesystem::path> readFiles() const override;
    std::int64_t changeCount() const override;
    bool handOver(std::chrono::milliseconds limit) override;

    // Long transfers to other programs that are under way.
    std::size_t transferCount() const { return transfers.size(); }

private:
    using Offer = std::shared_ptr<const ClipboardOffer>;
    using Deadline = std::chrono::steady_clock::time_point;

    void own(ClipboardContent);
    void announce(std::shared_ptr<const ClipboardContent>);
    void replaceUnannounced(ClipboardContent);
    void announceLate();
    Offer offer() const;
    void setOffer(Offer);
    xcb_window_t currentOwner(xcb_atom_t selection) const;
    X11Client clientOf(xcb_window_t) const;
    X11Client clientInFront() const;
    void handle(const X11Event&);
    void noteLoss(const X11Event&);
    void noteOtherOwner(const X11Event&);
    void answer(const xcb_selection_request_event_t&);
    bool respond(const xcb_selection_request_event_t&, const ClipboardOffer*);
    void tellIfTaken(const xcb_selection_request_event_t&) const;
    bool giveHeld(const xcb_selection_request_event_t&);
    bool isForTransfer(const xcb_selection_request_event_t&, const ClipboardOffer&) const;
    void answerToolkit(const X11Client&, const X11Event&);
    bool sendWhole(xcb_window_t, xcb_atom_t property, xcb_atom_t type, const std::string&);
    void showEmptinessTo(xcb_window_t manager, Deadline);
    bool askManagerToSave(const ClipboardOffer&, Deadline);

    X11Session& session;
    Dispatch& dispatch;
    SelectionTransfers transfers;
    SelectionAnswers answers;
    std::optional<TransferAnswers> fileTransfers;
    SelectionAnswers toolkitAnswers; // session's thread only
    const xcb_atom_t clipboard;
    X11Client toolkit;
    std::uint32_t writtenBy = 0; // the number of the request that made us the owner
    std::int64_t changes = 0;
    HeldPaste held;
    std::function<void()> onTaken;
    bool unannounced = false; // nobody was told of the content

    mutable std::mutex offerMutex;
    Offer currentOffer; // null while another one is the owner

    Subscription events;
    Subscription toolkitEvents;
};

} // namespace tallowbay::x11
