#pragma once

#include "platform/Processes.h"
#include "platform/qt/Artwork.h"

namespace tallowbay::qt {

// The program's artwork, beside the executables that another backend finds.
class QtResources final : public Resources {
public:
    explicit QtResources(const Resources& executables)
        : executables(executables)
    {
    }

    std::filesystem::path executable(const std::string& name) const override
    {
        return executables.executable(name);
    }
    bool hasImage(const std::string& name) const override
    {
        return Artwork().has(QString::fromStdString(name));
    }

private:
    const Resources& executables;
};

} // namespace tallowbay::qt
