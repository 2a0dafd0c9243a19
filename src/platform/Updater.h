#pragma once

namespace tallowbay {

// Asks whether there is a newer version of the program, and tells the user what came of it.
//
// Thread: main queue; never blocks it.
class Updater {
public:
    virtual ~Updater() = default;

    // The user asked: the result is shown in every case, also when it is "up to date" or a failure.
    // Asking again while one check is under way changes nothing. A check that has not ended when
    // the updater goes ends with it.
    virtual void checkForUpdates() = 0;
};

} // namespace tallowbay
