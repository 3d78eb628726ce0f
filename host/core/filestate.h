// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/types.h>

/// What the file system says about a path: equal states mean that nothing was written meanwhile.
struct FileState {
    bool exists = false; ///< Whether there is a file; all else is 0 when not.
    mode_t type = 0;     ///< S_IFREG, S_IFDIR and so on.
    dev_t device = 0;    ///< Number of the file system.
    ino_t inode = 0;     ///< Number within the file system.
    uid_t owner = 0;     ///< The user's number.
    qint64 size = 0;     ///< In bytes.
    qint64 modified = 0; ///< In nanoseconds.
    qint64 changed = 0;  ///< In nanoseconds.

    /// The state of what @p file leads to, through symlinks.
    static FileState of(const QString &file);
    /// The state of @p file itself, which may be a symlink.
    static FileState ofLink(const QString &file);

    /// Whether it is a regular file.
    bool isRegular() const;
    /// Whether both are one file, whatever the paths were.
    bool isSameFileAs(const FileState &other) const;
    /// Whether all members are equal.
    bool operator==(const FileState &other) const;
    /// Whether a member differs.
    bool operator!=(const FileState &other) const;
};
