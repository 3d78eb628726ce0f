// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/removedirectory.h"

#include <fcntl.h>
#include <filesystem>
#include <linux/stat.h>
#include <sys/stat.h>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Also for a directory of the same file system, whose device number is the same.
bool isMountPoint(const fs::path &path)
{
    struct statx state = {};
    return statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, 0, &state) == 0
        && (state.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

} // namespace

bool removeDirectory(const std::string &directory)
{
    std::error_code error;
    for (fs::recursive_directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        if (isMountPoint(entry->path())) {
            return false;
        }
    }
    fs::remove_all(directory, error);
    return !error;
}
