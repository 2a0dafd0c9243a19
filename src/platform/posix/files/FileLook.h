#pragma once

#include <filesystem>

namespace tallowbay::posix {

// One look at what a path names.
struct FileLook {
    enum class Writers { none, some, unknown };

    bool isFile = false; // a regular one, behind links or not; else nothing below means anything
    bool isEmpty = false;
    bool wasLinked = false; // a symbolic link, or a file with several names
    Writers writers = Writers::unknown; // who has it open for writing, in any process
};

// Exact on file systems with leases, which the local ones all have; elsewhere, and for a file of
// another user, the writers stay unknown.
//
// Thread: one that blocks all signals: a program that opens the file for writing just as we look
// makes the kernel send one.
FileLook lookAtFile(const std::filesystem::path&);

} // namespace tallowbay::posix
