#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tallowbay {

// Runs other programs, each with a fixed list of arguments and without a shell.
//
// Thread: any; several may run at once.
class Processes {
public:
    virtual ~Processes() = default;

    // Blocks until the program has ended, however long that takes. True exactly if it could be
    // started and ended with status 0; an end by a signal is not 0. Its output goes to the null
    // device and its input is empty; it inherits the environment and the working folder, and none
    // of our descriptors.
    virtual bool run(
        const std::filesystem::path& program, const std::vector<std::string>& arguments) = 0;
};

} // namespace tallowbay
