#pragma once

#include "desktop/support/ChildProcess.h"

#include <filesystem>
#include <string>

namespace tallowbay::test {

// The empty home of a user who has been through the first run, gone with this object.
//
// A failure throws std::filesystem::filesystem_error, which fails the test.
class Home {
public:
    Home();
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;
    ~Home();

    const std::filesystem::path& folder() const { return root; }
    std::filesystem::path screenshots() const { return root / "Desktop"; }
    std::filesystem::path optimized() const { return root / "Downloads/Tallowbay/optimized"; }
    std::filesystem::path preferences(const std::string& domain) const;

    // For programs that live here: no session bus and no settings of the machine's own user, and
    // the tools of toolFolder() before all others.
    Environment environment() const;

    // Programs put here are found before those of the machine, by whatever starts afterwards.
    std::filesystem::path toolFolder() const { return root / "tools"; }

    // Puts a gate before the tool of that name. While it is closed, the tool waits; then it does
    // what it always does. At first the gate is open.
    void addGate(const std::string& tool);
    void closeGate() const;
    void openGate() const;

    // The tool of that name always fails.
    void breakTool(const std::string& tool);

    // From now on programs are told that this desktop runs, such as "GNOME".
    void runDesktop(const std::string& name) { desktop = name; }

    // From now on programs find no tool but those of toolFolder().
    void hideMachinesTools() { searchPath = toolFolder(); }

    // As a screenshot tool does: under the system's name for the given second, complete at once.
    // Returns its path.
    std::filesystem::path takeScreenshot(int second) const;
    std::filesystem::path takeScreenshot(const std::string& name) const;

private:
    void writeTool(const std::string& name, const std::string& script);

    std::filesystem::path root;
    std::string searchPath;
    std::string desktop = "none";
};

// A picture such as a screen shows, as PNG; no two numbers give the same.
std::string screenPicture(int number);

void writeFile(const std::filesystem::path&, const std::string& bytes);

} // namespace tallowbay::test
