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

} // namespace

FileLock::FileLock(const QString &lockFile)
    : file(lockFile)
{
}

FileLock::~FileLock()
{
    if (openDescriptor >= 0) {
        QFile::remove(file); // Before the lock ends, or a new owner's file would be removed.
        leave();
    }
}

int FileLock::lock()
{
    int error = 0;
    do {
        error = tryLock();
    } while (error == ESTALE);
    return error;
}

/// ESTALE when the file was removed before it was locked: its owner has ended meanwhile.
int FileLock::tryLock()
{
    // Does not block on a FIFO, which lock files of other programs could be.
    const int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
    openDescriptor = open(QFile::encodeName(file).constData(), flags, lockFileMode);
    if (openDescriptor < 0) {
        return errno;
    }
    const FileState opened = FileState::ofDescriptor(openDescriptor);
    int error = opened.isRegular() ? 0 : EINVAL;
    if (error == 0 && flock(openDescriptor, LOCK_EX | LOCK_NB) != 0) {
        error = errno;
    }
    if (error == 0 && !FileState::ofLink(file).isSameFileAs(opened)) {
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
