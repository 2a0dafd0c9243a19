#pragma once

#include <filesystem>
#include <string>

namespace tallowbay {

// What came along with the program.
//
// Thread: any.
class Resources {
public:
    virtual ~Resources() = default;

    // The absolute path of an executable that was shipped or installed for us under this name;
    // empty path if there is none, and for an empty name or one with a slash.
    virtual std::filesystem::path executable(const std::string& name) const = 0;

    // Whether there is artwork of exactly this name.
    virtual bool hasImage(const std::string& name) const = 0;
};

} // namespace tallowbay
