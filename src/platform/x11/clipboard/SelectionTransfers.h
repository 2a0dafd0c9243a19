#pragma once

#include "platform/x11/X11Session.h"

#include <list>
#include <string>

namespace tallowbay::x11 {

// Hands bytes over to other programs' windows, as properties: short ones at once, long ones in
// pieces, each of which waits until the program has taken the one before.
//
// Any number of transfers may run side by side. One ends when its last piece is taken, when the
// window goes away, when the same property is asked for once more, or after a minute in which the
// program took nothing.
//
// Thread: main queue.
class SelectionTransfers {
public:
    SelectionTransfers(X11Session&, Dispatch&);

    // False if the window is not there.
    bool send(xcb_window_t, xcb_atom_t property, xcb_atom_t type, std::string bytes);

    // A program that asks anew for the same property has given up what it asked for before.
    void forget(xcb_window_t, xcb_atom_t property);

    // To be shown every event of the session's main queue.
    void handle(const X11Event&);

    // How many are under way.
    std::size_t size() const { return transfers.size(); }

private:
    struct Transfer {
        xcb_window_t window;
        xcb_atom_t property;
        xcb_atom_t type;
        std::string bytes;
        std::size_t sent = 0;
        int idleTicks = 0;
    };
    using Position = std::list<Transfer>::iterator;

    std::size_t pieceLength() const;
    bool begin(Transfer);
    bool watch(xcb_window_t);
    void sendPiece(Position);
    void end(Position);
    Position find(xcb_window_t, xcb_atom_t property);
    void endAll(xcb_window_t);
    void endIdle();

    X11Session& session;
    Dispatch& dispatch;
    std::list<Transfer> transfers;
    Subscription idleTimer; // while there are transfers
};

} // namespace tallowbay::x11
