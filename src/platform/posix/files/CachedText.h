#pragma once

#include "platform/posix/files/FileBytes.h"
#include "platform/posix/files/FileVersion.h"

#include <string>

namespace tallowbay::posix {

// The text of a file that others may change: read anew only when they did. Thread: one at a time.
class CachedText {
public:
    explicit CachedText(std::filesystem::path path)
        : path(std::move(path))
    {
    }

    // Empty where there is no file. Good until the next call.
    const std::string& current()
    {
        const auto seen = FileVersion::of(path);
        if (seen && seen == version)
            return text;
        text = seen ? readFile(path).value_or("") : "";
        version = seen && seen->isReliable() ? seen : std::nullopt;
        return text;
    }

private:
    const std::filesystem::path path;
    std::optional<FileVersion> version;
    std::string text;
};

} // namespace tallowbay::posix
