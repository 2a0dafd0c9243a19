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
struct ScreenshotPlace;

// Where the system saves screenshots.
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

    // Where screenshots are to be looked for: the folder of the preferences alone; where they name
    // none, all that the desktop's tools save to. Never empty.
    std::vector<ScreenshotPlace> places() const;

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

} // namespace tallowbay
