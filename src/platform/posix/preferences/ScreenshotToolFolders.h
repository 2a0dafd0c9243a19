#pragma once

#include "platform/DesktopSettings.h"
#include "platform/posix/files/CachedText.h"
#include "platform/posix/preferences/FolderLooks.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tallowbay::posix {

// The folders that were named in the configuration files of screenshot tools that run on any
// desktop. Thread: one at a time.
class ScreenshotToolFolders {
public:
    ScreenshotToolFolders(const std::filesystem::path& config, std::filesystem::path home);

    // Each with its tool, as the files are at this moment.
    std::vector<std::pair<std::filesystem::path, std::string>> chosen();

private:
    struct File {
        const char* tool;
        const char* group;
        const char* key;
        CachedText text;
    };

    const std::filesystem::path home;
    std::vector<File> files;
};

// Places by their folders, each once however its path is written, with the first of its reasons.
// The subfolders of a place belong to it unless people keep other things there as well.
class PlaceList {
public:
    explicit PlaceList(FolderLooks& looks)
        : looks(looks)
    {
    }

    // The folder of other things, such as the Desktop, and every folder above it.
    void keepForOthers(const std::filesystem::path& folder);

    void add(const std::filesystem::path& folder, const std::string& reason);

    // By then all folders of other things have to be told.
    std::vector<ScreenshotPlace> places() const;

private:
    bool isForOthers(const std::filesystem::path& folder) const;

    FolderLooks& looks;
    std::vector<std::filesystem::path> others;
    std::vector<ScreenshotPlace> list;
};

} // namespace tallowbay::posix
