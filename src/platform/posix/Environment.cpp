#include "platform/posix/Environment.h"

#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace {

// The lookup fills in an entry from the user database, as getpwuid_r() and its like do.
template <typename Lookup> std::optional<std::filesystem::path> homeOfEntry(Lookup lookup)
{
    std::vector<char> strings(64 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (lookup(&entry, strings.data(), strings.size(), &found) != 0 || !found)
        return std::nullopt;
    const std::filesystem::path home = found->pw_dir;
    return home.is_absolute() ? std::optional(home) : std::nullopt;
}

std::optional<std::filesystem::path> homeOfThisUser()
{
    return homeOfEntry([](auto... entry) { return ::getpwuid_r(::getuid(), entry...); });
}

} // namespace

std::optional<std::string> environmentText(const char* variable)
{
    const char* value = std::getenv(variable);
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::filesystem::path> environmentFolder(const char* variable)
{
    const auto text = environmentText(variable);
    return text && text->front() == '/' ? std::optional<std::filesystem::path>(*text)
                                        : std::nullopt;
}

bool environmentIsWayland()
{
    if (environmentText("TALLOWBAY_DESKTOP") == "x11")
        return false;
    return environmentText("WAYLAND_DISPLAY") || environmentText("XDG_SESSION_TYPE") == "wayland";
}

std::filesystem::path environmentHome()
{
    if (const auto home = environmentFolder("HOME"))
        return *home;
    return homeOfThisUser().value_or("/");
}

std::optional<std::filesystem::path> homeOfUser(const std::string& name)
{
    return homeOfEntry([&](auto... entry) { return ::getpwnam_r(name.c_str(), entry...); });
}

std::filesystem::path environmentConfigFolder()
{
    return environmentFolder("XDG_CONFIG_HOME").value_or(environmentHome() / ".config");
}

} // namespace tallowbay::posix
