#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

class FileSystem;
class UserDefaults;
class UserDefaultsStore;
struct DesktopSettings;

// Where the system saves screenshots, and by which names they are known there.
//
// Thread: main queue. Every question is answered from the settings as they are at that moment; only
// another user's home is asked for once.
class ScreenshotLocation {
public:
    ScreenshotLocation(UserDefaultsStore&, const FileSystem&, const DesktopSettings&);
    ~ScreenshotLocation();

    // The folder of the screenshot preferences; where they name none, or the home of a user whom
    // nobody knows ("~nobody/Shots"), the desktop's own; else the user's Desktop folder.
    std::filesystem::path systemScreenshotDirectory() const;

    // Whether screenshots go to the clipboard instead of a folder.
    bool targetIsClipboard() const;

private:
    struct User {
        std::string name;
        std::optional<std::filesystem::path> home;
        int questionsLeft = 0; // until one who was not found is looked up anew
    };

    std::optional<std::filesystem::path> preferredFolder() const;
    std::optional<std::filesystem::path> homeOf(const std::string& user) const;

    std::unique_ptr<UserDefaults> preferences;
    const FileSystem& fileSystem;
    const DesktopSettings& desktop;
    mutable std::optional<User> lastUser;
};

// Whether a picture file is called as the system calls its screenshots: the prefixes count with
// their trailing blank and their case. Further prefixes are those of the desktop's own tools.
bool hasScreenshotName(
    const std::filesystem::path&, const std::vector<std::string>& furtherPrefixes = {});

// Whether the file has one of the extensions of a screenshot, whatever their case.
bool hasScreenshotExtension(const std::filesystem::path&);

} // namespace tallowbay
