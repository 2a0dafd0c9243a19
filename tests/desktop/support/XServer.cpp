#include "desktop/support/XServer.h"

#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace tallowbay::test {
namespace {

std::string size(const XServer::Options& options)
{
    return std::to_string(options.width) + "x" + std::to_string(options.height);
}

std::vector<std::string> joined(std::vector<std::string> list, const std::vector<std::string>& more)
{
    list.insert(list.end(), more.begin(), more.end());
    return list;
}

// The line of digits that the server writes once it accepts connections.
std::string displayNumber(int pipe)
{
    std::string number;
    pollfd readable{pipe, POLLIN, 0};
    char letter = 0;
    while (poll(&readable, 1, 30'000) > 0 && read(pipe, &letter, 1) == 1 && letter != '\n')
        number += letter;
    return letter == '\n' ? number : std::string();
}

// A window manager that has just begun may overlook a window: its own word is not enough.
bool hasFrame(XClient& client)
{
    xcb_map_window(client.connection(), client.window());
    return client.isFramed();
}

} // namespace

XServer::XServer()
    : XServer(Options{})
{
}

XServer::XServer(const Options& options)
    : XServer(
        joined(
            {"Xvfb", "-screen", "0", size(options) + "x24", "-nolisten", "tcp", "-noreset"},
            options.extraArguments),
        {})
{
}

XServer::XServer(std::vector<std::string> command, const Environment& environment)
{
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("No pipe");
    command.insert(command.end(), {"-displayfd", std::to_string(pipe[1])});
    server = std::make_unique<ChildProcess>(command, environment, "", pipe[1]);
    close(pipe[1]);
    const std::string number = displayNumber(pipe[0]);
    close(pipe[0]);
    if (number.empty())
        throw std::runtime_error(command.front() + " did not start: " + server->errors());
    name = ":" + number;
}

std::unique_ptr<XServer> XServer::nestedIn(XServer& outer, const Options& options)
{
    return std::unique_ptr<XServer>(new XServer(
        joined(
            {"Xephyr", "-screen", size(options), "-nolisten", "tcp", "-noreset", "-ac"},
            options.extraArguments),
        outer.environment()));
}

Environment XServer::environment() const
{
    return {
        {"DISPLAY", name},
        {"WAYLAND_DISPLAY", std::nullopt},
        {"XDG_SESSION_TYPE", std::nullopt},
        {"XAUTHORITY", std::nullopt}};
}

void XServer::startWindowManager(const std::vector<std::string>& command)
{
    windowManager = start(command);
    XClient probe(name);
    // That it wants no keyboard: it must not disturb the focus when it goes.
    probe.setValues(probe.window(), "WM_HINTS", "WM_HINTS", {1, 0, 0, 0, 0, 0, 0, 0, 0});
    if (!waitUntil([&probe] { return hasFrame(probe); }))
        throw std::runtime_error(command.front() + " did not start: " + windowManager->errors());
}

Finished XServer::run(const std::vector<std::string>& command, const std::string& input) const
{
    const std::unique_ptr<ChildProcess> child = start(command, input);
    const std::optional<int> status = child->wait();
    return {status, child->output(), child->errors()};
}

Finished XServer::search(const std::vector<std::string>& pattern) const
{
    std::vector<std::string> command{"xdotool", "search", "--onlyvisible"};
    command.insert(command.end(), pattern.begin(), pattern.end());
    Finished found;
    waitUntil([&] {
        found = run(command);
        return found.errors.find("X Error") == std::string::npos;
    });
    return found;
}

std::unique_ptr<ChildProcess> XServer::start(
    const std::vector<std::string>& command, const std::string& input) const
{
    return std::make_unique<ChildProcess>(command, environment(), input);
}

void XServer::setKeyboard(const std::vector<std::string>& arguments) const
{
    const Finished result = run(joined({"setxkbmap"}, arguments));
    if (result.status != 0)
        throw std::runtime_error("setxkbmap: " + result.errors);
}

void XServer::kill()
{
    server->signal(SIGKILL);
    server->wait();
}

} // namespace tallowbay::test
