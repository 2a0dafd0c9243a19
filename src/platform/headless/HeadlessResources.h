#pragma once

#include "platform/Resources.h"

#include <map>
#include <set>

namespace tallowbay::headless {

class HeadlessResources final : public Resources {
public:
    std::filesystem::path executable(const std::string& name) const override
    {
        const auto found = executables.find(name);
        return found == executables.end() ? std::filesystem::path() : found->second;
    }
    bool hasImage(const std::string& name) const override { return images.contains(name); }

    std::map<std::string, std::filesystem::path> executables; // by names without a slash
    std::set<std::string> images{"MenubarIcon"};
};

} // namespace tallowbay::headless
