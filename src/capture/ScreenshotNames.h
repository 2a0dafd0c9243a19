#pragma once

#include "base/NamePattern.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

class Console;
class UserDefaults;

// Which files are screenshots by their names: those that the system's own names begin like, those
// of the desktop's tools, and those that the user told of.
//
// Thread: main queue.
class ScreenshotNames {
public:
    // The tools' patterns are regular expressions for a whole name without its extension; one that
    // is none is left out. What is passed by reference outlives this object.
    ScreenshotNames(const std::vector<std::string>& toolPatterns, const UserDefaults&, Console&);
    ~ScreenshotNames();

    // Reads the user's patterns if they have changed, and says which of them make no sense.
    void refresh();

    // The user's patterns count as they were read last. They may be for the name with its extension
    // or without.
    bool match(const std::filesystem::path&) const;

    // What was wrong with the user's patterns, a sentence each.
    const std::vector<std::string>& problems() const { return userProblems; }

private:
    struct ToolPatterns;
    void addUserPattern(std::string text);
    void complain(const std::string& sentence);

    const UserDefaults& preferences;
    Console& console;
    std::unique_ptr<const ToolPatterns> tools;
    std::optional<std::string> userText; // that was read last
    std::vector<NamePattern> userPatterns;
    std::vector<std::string> userProblems;
};

// Whether a picture file is called as the system calls its screenshots: the prefixes count with
// their trailing blank and their case.
bool hasScreenshotName(const std::filesystem::path&);

// Whether the file has one of the extensions of a screenshot, whatever their case.
bool hasScreenshotExtension(const std::filesystem::path&);

} // namespace tallowbay
