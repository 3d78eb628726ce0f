// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/directories.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace {

/// Returns an error number. A file system that cannot sync is no error.
int syncFile(const char *file)
{
    // The file may have been replaced: neither a symlink is followed nor a FIFO's writer awaited.
    const int descriptor = open(file, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    const int error = fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    return error == EINVAL || error == ENOTSUP ? 0 : error;
}

} // namespace

int syncFiles(const std::string &directory)
{
    std::error_code error;
    for (std::filesystem::directory_iterator file(directory, error), end; !error && file != end;
         file.increment(error)) {
        const bool isRegular
            = file->symlink_status(error).type() == std::filesystem::file_type::regular;
        const int syncError = isRegular ? syncFile(file->path().c_str()) : 0;
        if (syncError != 0) {
            return syncError;
        }
    }
    return error.value();
}

void removeDirectory(const std::string &directory)
{
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}
