#pragma once

#include "desktop/support/ChildProcess.h"

#include <memory>
#include <string>
#include <vector>

namespace tallowbay::test {

// What came of a program that has ended.
struct Finished {
    std::optional<int> status; // empty if it had to be ended
    std::string output;
    std::string errors;
};

// A private X server on a free display, gone with this object.
//
// Every failure throws std::runtime_error with the server's own words, which fails the test.
class XServer {
public:
    struct Options {
        int width = 1280;
        int height = 800;
        std::vector<std::string> extraArguments;
    };

    // A screen that exists in memory only.
    XServer();
    explicit XServer(const Options&);

    // A server whose screen is a window of another one, and whose keyboard and mouse are what
    // arrives in that window: keys typed there are a device's keys here, not XTEST's.
    static std::unique_ptr<XServer> nestedIn(XServer& outer, const Options&);

    // Such as ":7".
    const std::string& display() const { return name; }

    // What a program needs in its environment to run here.
    Environment environment() const;

    // Returns when it manages windows.
    void startWindowManager(const std::vector<std::string>& command = {"openbox"});

    void endWindowManager() { windowManager.reset(); }

    // Runs a program to its end.
    Finished run(const std::vector<std::string>& command, const std::string& input = {}) const;

    // The windows in sight that match, a line for each, after which xdotool does what follows in
    // the pattern; status 1 if there is none. Asked again where a window ended meanwhile, of which
    // xdotool dies.
    Finished search(const std::vector<std::string>& pattern) const;

    std::unique_ptr<ChildProcess> start(
        const std::vector<std::string>& command, const std::string& input = {}) const;

    // setxkbmap's arguments, such as {"-layout", "us,ru"}.
    void setKeyboard(const std::vector<std::string>& arguments) const;

    pid_t process() const { return server->pid(); }

    // Ends the server with all its clients.
    void kill();

private:
    XServer(std::vector<std::string> command, const Environment&);

    std::unique_ptr<ChildProcess> server;
    std::string name;
    std::unique_ptr<ChildProcess> windowManager;
};

} // namespace tallowbay::test
