#pragma once

#include "platform/posix/FileDescriptor.h"

#include <filesystem>
#include <string_view>

#include <sys/types.h>

namespace tallowbay::posix {

// New bytes on their way, in a file of an unguessable name beside the one they are for; gone with
// this object unless they were put in place. A draft is locked as long as its program lives.
//
// Thread: any, one at a time. What fails says why in errno.
class FileDraft {
public:
    // Permissions as for open(): the umask takes its part.
    explicit FileDraft(const std::filesystem::path& folder, mode_t permissions = 0666);
    ~FileDraft();
    FileDraft(const FileDraft&) = delete;
    FileDraft& operator=(const FileDraft&) = delete;

    // Synced to the disk. False also if the draft could not be made.
    bool write(std::string_view bytes);
    void copyPermissions(const std::filesystem::path& from);

    // Replaces the entry of that name, a symbolic link itself and not its target.
    bool putInPlaceOf(const std::filesystem::path& target);

private:
    bool lock() const;

    std::filesystem::path path;
    FileDescriptor file;
    int problem = 0; // why there is no draft
};

// Removes the drafts of programs that were killed. Others, and whatever else is in the folder,
// stay.
void removeAbandonedDrafts(const std::filesystem::path& folder);

} // namespace tallowbay::posix
