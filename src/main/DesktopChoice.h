#pragma once

#include <optional>
#include <string>
#include <variant>

namespace tallowbay {

// The display servers that the program has backends for.
enum class DesktopKind { x11 };

// What the environment says of the session; what is absent or empty there is empty here.
struct SessionEnvironment {
    std::optional<std::string> forced; // TALLOWBAY_DESKTOP, by which the user decides
    std::optional<std::string> display; // DISPLAY
    std::optional<std::string> waylandDisplay; // WAYLAND_DISPLAY

    static SessionEnvironment ofProcess();
};

// Which desktop to run on, or why there is none, in one sentence for people. Whether the display
// answers is not asked.
std::variant<DesktopKind, std::string> chooseDesktop(const SessionEnvironment&);

// The toolkit's name for its side of that desktop.
const char* qtPlatformOf(DesktopKind);

} // namespace tallowbay
