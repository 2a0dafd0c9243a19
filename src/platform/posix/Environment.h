#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tallowbay::posix {

// What the user's session says through its environment variables. Thread: any, as long as nobody
// changes the environment.

// Empty if the variable is absent or empty.
std::optional<std::string> environmentText(const char* variable);

// Empty unless the variable holds an absolute path; anything else is to be ignored by the rules of
// the desktop's base folders.
std::optional<std::filesystem::path> environmentFolder(const char* variable);

// Whether the session is a Wayland session, also where it has an X server beside it. Not where the
// user has decided for X11 (TALLOWBAY_DESKTOP), as for an X server in a window of such a session.
bool environmentIsWayland();

// $HOME, else what the user database says, else the root folder.
std::filesystem::path environmentHome();

// What the user database says of that user. Empty if it knows none of that name, or no absolute
// path of a home. May ask over a network.
std::optional<std::filesystem::path> homeOfUser(const std::string& name);

// $XDG_CONFIG_HOME, else .config in the home folder.
std::filesystem::path environmentConfigFolder();

} // namespace tallowbay::posix
