#pragma once

#include <string>

namespace tallowbay {

// Whether something can be done here, and if not, why.
struct Permission {
    enum class State {
        granted,
        needsUser, // it can be had, once the user agrees
        unavailable, // this session has no way to do it
    };
    State state = State::unavailable;
    std::string reason; // for people; empty exactly if granted

    bool granted() const { return state == State::granted; }
};

// May we see and send keystrokes, may we see the screen?
//
// Thread: main queue. Cheap enough to ask every half second.
class Permissions {
public:
    virtual ~Permissions() = default;

    // Seeing the paste keys of other programs, and typing one.
    virtual Permission accessibility() const = 0;

    // Capturing the screen without asking each time.
    virtual Permission screenRecording() const = 0;
};

} // namespace tallowbay
