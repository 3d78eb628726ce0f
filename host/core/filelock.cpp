// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filelock.h"

#include "host/core/filestate.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace {

const mode_t lockFileMode = 0666;
const int maxAttempts = 100;

} // namespace

FileLock::FileLock(const QString &lockFile)
    : file(lockFile)
{
}

FileLock::~FileLock()
{
    if (isLocked()) {
        if (isIntact()) {
            QFile::remove(file); // Before the lock ends, or a new owner's file would be removed.
        }
        leave();
    }
}

int FileLock::lock()
{
    int error = ESTALE;
    for (int attempt = 0; error == ESTALE && attempt < maxAttempts; ++attempt) {
        error = tryLock();
    }
    return error;
}

bool FileLock::isLocked() const
{
    return openDescriptor >= 0;
}

bool FileLock::isIntact() const
{
    return FileState::ofLink(file).isSameFileAs(FileState::ofDescriptor(openDescriptor));
}

/// ESTALE when the file was removed before it was locked: its owner has ended meanwhile.
int FileLock::tryLock()
{
    // Does not block on a FIFO, which lock files of other programs could be.
    const int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const QByteArray path = QFile::encodeName(file);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
    openDescriptor = open(path.constData(), O_RDWR | O_CREAT | flags, lockFileMode);
    if (openDescriptor < 0 && errno == EACCES) {
        // Left by a build of another user. NFS cannot lock a file that was opened like this.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
        openDescriptor = open(path.constData(), O_RDONLY | flags);
    }
    if (openDescriptor < 0) {
        return errno;
    }
    const FileState opened = FileState::ofDescriptor(openDescriptor);
    // Anything else belongs to somebody else, and must not be removed.
    int error = opened.isRegular() && opened.size == 0 ? 0 : EEXIST;
    if (error == 0 && flock(openDescriptor, LOCK_EX | LOCK_NB) != 0) {
        error = errno;
    }
    if (error == 0 && !isIntact()) {
        error = ESTALE;
    }
    if (error != 0) {
        leave();
    }
    return error;
}

void FileLock::leave()
{
    close(std::exchange(openDescriptor, -1));
}

int FileLock::descriptor() const
{
    return openDescriptor;
}
