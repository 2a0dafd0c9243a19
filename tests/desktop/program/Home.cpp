#include "desktop/program/Home.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include <png.h>
#include <unistd.h>

namespace tallowbay::test {

namespace fs = std::filesystem;

namespace {

constexpr int pictureWidth = 640;
constexpr int pictureHeight = 400;

fs::path makeRoot()
{
    std::string pattern = fs::temp_directory_path() / "tallowbay-home-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw fs::filesystem_error("mkdtemp", std::error_code(errno, std::generic_category()));
    return pattern;
}

// A window of one colour with rows of something like text, different for each number.
std::vector<std::uint8_t> picturePixels(int number)
{
    std::vector<std::uint8_t> pixels(std::size_t(pictureWidth) * pictureHeight * 3, 0xf4);
    std::minstd_rand random(static_cast<unsigned>(number) + 1);
    for (int y = 24; y < pictureHeight - 24; ++y) {
        for (int x = 24; x < pictureWidth - 24; ++x) {
            if (y % 16 < 9 && random() % 5 < 2)
                pixels[(std::size_t(y) * pictureWidth + x) * 3 + number % 3] = random() % 200;
        }
    }
    return pixels;
}

} // namespace

Home::Home()
    : root(makeRoot())
    , searchPath(toolFolder().string() + ":" + std::getenv("PATH"))
{
    for (const char* folder : {"Desktop", "Downloads", "tools", ".config/tallowbay", "run"})
        fs::create_directories(root / folder);
    fs::permissions(root / "run", fs::perms::owner_all);
    writeFile(preferences("com.quarnel.tallowbay"), R"({"onboardingCompleted": true})");
}

Home::~Home()
{
    std::error_code ignored;
    fs::permissions(optimized(), fs::perms::owner_all, ignored);
    fs::remove_all(root, ignored);
}

fs::path Home::preferences(const std::string& domain) const
{
    return root / ".config/tallowbay" / (domain + ".json");
}

Environment Home::environment() const
{
    Environment environment{
        {"HOME", root},
        {"XDG_CONFIG_HOME", root / ".config"},
        {"XDG_RUNTIME_DIR", root / "run"},
        {"XDG_CURRENT_DESKTOP", desktop},
        {"LC_ALL", "C.UTF-8"},
        {"PATH", searchPath}};
    for (const char* name :
         {"DBUS_SESSION_BUS_ADDRESS", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "XDG_DATA_HOME",
          "XDG_CACHE_HOME", "XDG_PICTURES_DIR", "XDG_SCREENSHOTS_DIR", "HYPRSHOT_DIR",
          "GRIM_DEFAULT_DIR", "LANGUAGE", "SESSION_MANAGER", "QT_QPA_PLATFORM"})
        environment[name] = std::nullopt;
    return environment;
}

void Home::writeTool(const std::string& name, const std::string& script)
{
    writeFile(toolFolder() / name, "#!/bin/sh\n" + script);
    fs::permissions(toolFolder() / name, fs::perms::owner_all);
}

void Home::addGate(const std::string& tool)
{
    writeTool(
        tool,
        "while [ -e '" + (root / "closed").string() + "' ]; do sleep 0.01; done\n"
            + "PATH=${PATH#*:}\nexec " + tool + " \"$@\"\n");
}

void Home::closeGate() const
{
    writeFile(root / "closed", "");
}

void Home::openGate() const
{
    fs::remove(root / "closed");
}

void Home::breakTool(const std::string& tool)
{
    writeTool(tool, "exit 99\n");
}

fs::path Home::takeScreenshot(int second) const
{
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "Screenshot 2026-01-05 at 10.31.%02d.png", second % 60);
    const fs::path path = screenshots() / name.data();
    writeFile(path, screenPicture(second));
    return path;
}

fs::path Home::takeScreenshot(const std::string& name) const
{
    const fs::path path = screenshots() / name;
    writeFile(path, screenPicture(1));
    return path;
}

std::string screenPicture(int number)
{
    const auto pixels = picturePixels(number);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = pictureWidth;
    image.height = pictureHeight;
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
    std::string bytes(size, '\0');
    png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.data(), 0, nullptr);
    return bytes;
}

void writeFile(const fs::path& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
}

} // namespace tallowbay::test
