#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace tallowbay::test {

// An empty folder for one test, gone with all it holds when destroyed.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        auto pattern = (std::filesystem::temp_directory_path() / "tallowbay-XXXXXX").native();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("cannot make a temporary folder");
        path = std::filesystem::canonical(pattern);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;
};

} // namespace tallowbay::test
