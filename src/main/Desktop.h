#pragma once

#include "main/DesktopChoice.h"
#include "platform/Platform.h"

#include <memory>
#include <stdexcept>

namespace tallowbay {

class Views;

// Says what is missing, for people.
class DisplayUnusable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The backends of one desktop session, and the main loop. Its users end before it does.
//
// Thread: main queue.
class Desktop {
public:
    virtual ~Desktop() = default;

    virtual Platform platform() = 0;
    virtual Views& views() = 0;

    // The main loop. Returns the exit status.
    virtual int run() = 0;

    // Waits for the background work that is under way, which uses the other backends. To be called
    // when everyone has stopped, before this object goes. A tool that waits for the user is ended.
    virtual void finishBackgroundWork() = 0;
};

// The one place that knows every desktop. Needs the QApplication. Throws DisplayUnusable where the
// display lacks what the program cannot do without.
std::unique_ptr<Desktop> makeDesktop(DesktopKind);

} // namespace tallowbay
