#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tallowbay {

// The general pasteboard (the clipboard) of the user's session.
//
// Thread: main queue. What is written can be read by others while no window of ours has the focus,
// for as long as the program runs. No failure is reported.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    // Afterwards a paste inserts nothing, and a clipboard manager does not bring the old content
    // back.
    virtual void clear() = 0;

    // As clear(), for a paste that the user has just begun and whose content is still to come: if
    // the program that has the keyboard asks now, it is not answered before releasePaste(). When
    // the limit is over it is told that there is nothing, and so it is when another paste is to be
    // held before that; then neither is held, or both would insert what comes. What is written
    // meanwhile is there, but those who watch the pasteboard may not hear of it before the end. May
    // hold nothing.
    virtual void holdPaste(std::chrono::milliseconds limit) = 0;

    // Gives the program whose paste is held what the pasteboard holds: now, or when it asks, which
    // it may do later than its key was pressed. The handler is told once, perhaps during the call,
    // whether it has got it. False if none is held, or if it has not asked within the limit, or was
    // told that there is nothing: then nothing has been pasted, and the program has had the time to
    // say so to its user.
    virtual void releasePaste(std::function<void(bool taken)>) = 0;

    // No paste is held any more. Whoever waits is told that there is nothing, and the handler of a
    // release is told nothing.
    virtual void dropPaste() = 0;

    // A paste target receives the files, in this order; no text and no image beside them. The paths
    // are absolute; every byte of a name arrives. No files: as clear().
    virtual void writeFiles(const std::vector<std::filesystem::path>&) = 0;

    // Plain text, UTF-8.
    virtual void writeText(const std::string&) = 0;

    // From now on the handler is told whenever the program that has the keyboard is given files
    // that we wrote: once or more often for one paste. It may change the pasteboard, but not during
    // the call. Replaces the last handler.
    virtual void tellWhenFilesAreTaken(std::function<void()>) = 0;

    // The local files that a paste would insert, whoever put them there. Empty if it holds none,
    // or if its owner does not answer within half a second.
    virtual std::vector<std::filesystem::path> readFiles() const = 0;

    // Grows with every change of the content, by us or by others.
    virtual std::int64_t changeCount() const = 0;

    // Has the desktop keep what we wrote beyond the end of the program: true once it has taken it.
    // False if what the pasteboard holds is not a text of ours, or if the desktop keeps nothing; at
    // once, unless it holds nothing because of us: then once the desktop's clipboard manager has
    // seen that, and brings nothing back after our end. Blocks no longer than the limit, and never
    // longer than a second; others can read the content meanwhile, but no other task of the main
    // queue runs. No paste is held any more. For the shutdown.
    virtual bool handOver(std::chrono::milliseconds limit) = 0;
};

} // namespace tallowbay
