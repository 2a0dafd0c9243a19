#pragma once

#include <filesystem>
#include <string_view>

namespace tallowbay::linux_desktop {

// The file has the new bytes (true), or on failure still the old ones: they are written beside it,
// synced to the disk, then put in its place. An existing file keeps its permissions, a symbolic
// link stays and its target is replaced. Nothing is left behind on failure.
//
// Thread: any.
bool replaceFile(const std::filesystem::path&, std::string_view bytes);

// False if an error, such as a full disk, came before the last byte.
bool writeAll(int file, std::string_view bytes);

} // namespace tallowbay::linux_desktop
