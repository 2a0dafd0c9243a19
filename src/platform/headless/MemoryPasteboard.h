#pragma once

#include "platform/Pasteboard.h"

#include <optional>
#include <string>
#include <variant>

namespace tallowbay::headless {

// What a paste would insert stands in `files` and `text`; at most one of them holds anything.
class MemoryPasteboard final : public Pasteboard {
public:
    void clear() override;
    void holdPaste(std::chrono::milliseconds limit) override;
    void releasePaste(std::function<void(bool taken)>) override;
    void dropPaste() override;
    void writeFiles(const std::vector<std::filesystem::path>& paths) override;
    void tellWhenFilesAreTaken(std::function<void()> taken) override { onTaken = std::move(taken); }
    void writeText(const std::string& written) override;
    std::vector<std::filesystem::path> readFiles() const override { return files; }
    std::int64_t changeCount() const override { return changes; }
    bool handOver(std::chrono::milliseconds limit) override;

    // The program that has the keyboard asks for files; what it is given stands in `given`.
    void askForFiles();
    std::optional<std::vector<std::filesystem::path>> given;

    // Whether pastes are held at all, and whether one is.
    bool holdsPastes = false;
    bool holdsPaste() const { return hold != Hold::none; }

    // The time for which a paste is held is over.
    void endPatience();

    // Another program copies something.
    void copyElsewhere(std::vector<std::filesystem::path> paths);
    void copyTextElsewhere(std::string copied);

    std::vector<std::filesystem::path> files;
    std::string text;

    // Whether the desktop keeps texts, and the one that it was given.
    bool desktopKeepsTexts = true;
    std::string keptText;

private:
    enum class Hold { none, waits, refuses };

    void replace(std::vector<std::filesystem::path> paths, std::string written);
    void give();
    void refuse();
    void endHold(bool taken);

    bool textIsOurs = false;
    Hold hold = Hold::none;
    bool hasAsked = false; // and is not answered yet
    std::function<void(bool)> released;
    std::function<void()> onTaken;
    std::int64_t changes = 0;
};

} // namespace tallowbay::headless
