#pragma once

#include "editor/EditorStrip.h"

#include <functional>
#include <utility>

namespace tallowbay {

// An editor's strip for tests: keeps what it was asked.
class TestEditorStrip final : public EditorStrip {
public:
    using Paths = std::vector<std::filesystem::path>;

    void addURL(const std::filesystem::path& url) override
    {
        images.push_back(url);
        checked.push_back(url);
        if (onAdd)
            onAdd();
    }
    std::optional<std::filesystem::path> uncheckLastURL() override
    {
        if (checked.empty())
            return std::nullopt;
        const auto last = checked.back();
        checked.pop_back();
        return last;
    }
    bool uncheckAll() override { return !std::exchange(checked, {}).empty(); }
    Paths checkedURLs() const override { return checked; }
    bool showsImages() const override { return !images.empty(); }
    bool isBeingWritten(const std::filesystem::path& url) const override
    {
        return beingWritten.contains(url);
    }
    void finishWriting(std::chrono::milliseconds limit) override
    {
        if (onFinishWriting)
            onFinishWriting(limit);
    }
    void setPendingDivider() override { pendingDivider = true; }
    void removeDeletedFiles() override
    {
        if (onRemoveDeletedFiles)
            onRemoveDeletedFiles();
    }
    void removeExpiredURLs(const std::set<std::filesystem::path>& expired) override
    {
        const auto isExpired = [&](const auto& url) { return expired.contains(url); };
        std::erase_if(images, isExpired);
        std::erase_if(checked, isExpired);
    }

    Paths images;
    Paths checked;
    std::set<std::filesystem::path> beingWritten;
    bool pendingDivider = false;
    std::function<void()> onAdd;
    std::function<void(std::chrono::milliseconds limit)> onFinishWriting;
    std::function<void()> onRemoveDeletedFiles;
};

} // namespace tallowbay
