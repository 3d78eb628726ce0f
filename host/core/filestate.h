// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/types.h>

/// What the file system reports for a path: equal states mean that nothing was written in between.
struct FileState {
    bool exists = false; ///< Whether the file exists; if not, all else is 0.
    mode_t type = 0;     ///< S_IFREG, S_IFDIR and so on.
    dev_t device = 0;    ///< Device number of the file system.
    ino_t inode = 0;     ///< Inode number.
    qint64 size = 0;     ///< In bytes.
    qint64 modified = 0; ///< In nanoseconds.
    qint64 changed = 0;  ///< In nanoseconds.

    /// The state of what @p file refers to, following symlinks.
    static FileState of(const QString &file);
    /// The state of @p file itself, which may be a symlink.
    static FileState ofLink(const QString &file);
    /// The state of the open file @p descriptor.
    static FileState ofDescriptor(int descriptor);

    /// Whether it is a regular file.
    bool isRegular() const;
    /// Whether both are the same file, whatever their paths.
    bool isSameFileAs(const FileState &other) const;
    /// Whether nothing was changed in between, not even the permissions.
    bool operator==(const FileState &other) const;
    /// Whether something was changed in between.
    bool operator!=(const FileState &other) const;
};
