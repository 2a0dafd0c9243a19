#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

namespace tallowbay {

// The strip of recent screenshots in the editor window, as the batch sees it.
//
// Thread: main queue.
class EditorStrip {
public:
    virtual ~EditorStrip() = default;

    virtual void addURL(const std::filesystem::path&) = 0;

    // Unchecks the last checked screenshot and returns it; empty if none is checked.
    virtual std::optional<std::filesystem::path> uncheckLastURL() = 0;
    virtual bool uncheckAll() = 0; // true if any was checked
    virtual std::vector<std::filesystem::path> checkedURLs() const = 0;
    virtual bool showsImages() const = 0;

    // Whether an edit of this screenshot is on its way into the file. When the last one has
    // ended, ScreenshotBatch::editWritten() is called.
    virtual bool isBeingWritten(const std::filesystem::path&) const = 0;

    // At quit: what is being typed joins its screenshot, and every edit comes into its file before
    // this returns, unless the limit is over before. Nothing is told of it any more.
    virtual void finishWriting(std::chrono::milliseconds limit) = 0;

    // The next screenshot that is added begins a new group.
    virtual void setPendingDivider() = 0;

    // Drops the screenshots whose files are gone.
    virtual void removeDeletedFiles() = 0;

    // Drops these screenshots, whether their files are still there or not.
    virtual void removeExpiredURLs(const std::set<std::filesystem::path>&) = 0;
};

} // namespace tallowbay
