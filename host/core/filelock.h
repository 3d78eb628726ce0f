// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// A lock file that stays locked until every process that has inherited its descriptor has closed it.
///
/// A lock file left by a process that was killed is not locked any more. QLockFile would not do: its
/// lock ends with the process that has created it.
class FileLock
{
public:
    /// Does nothing before lock().
    explicit FileLock(const QString &lockFile);
    /// Removes the file if it is intact and closes the descriptor, unless leave() was called.
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    /// Creates the file if necessary and locks it without waiting. Call it once.
    /// @return 0, EWOULDBLOCK when another process holds the lock, EEXIST when the file is not an empty
    /// regular file, or another error number
    int lock();
    /// Whether this process has the lock.
    bool isLocked() const;
    /// Whether the file is still the one that was locked.
    bool isIntact() const;
    /// Closes the descriptor and keeps the file, for the processes that have inherited the lock.
    void leave();

    /// The descriptor to inherit, which is closed on exec() by default; -1 when not locked.
    int descriptor() const;

private:
    int tryLock();

    QString file;
    int openDescriptor = -1;
};
