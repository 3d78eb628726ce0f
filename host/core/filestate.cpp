// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filestate.h"

#include <QFile>

#include <sys/stat.h>

namespace {

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

FileState fromStat(const struct stat &raw)
{
    FileState state;
    state.exists = true;
    state.type = raw.st_mode & S_IFMT;
    state.device = raw.st_dev;
    state.inode = raw.st_ino;
    state.size = raw.st_size;
    state.modified = nanoseconds(raw.st_mtim);
    state.changed = nanoseconds(raw.st_ctim);
    return state;
}

} // namespace

FileState FileState::of(const QString &file)
{
    struct stat raw = {};
    return stat(QFile::encodeName(file).constData(), &raw) == 0 ? fromStat(raw) : FileState();
}

FileState FileState::ofLink(const QString &file)
{
    struct stat raw = {};
    return lstat(QFile::encodeName(file).constData(), &raw) == 0 ? fromStat(raw) : FileState();
}

FileState FileState::ofDescriptor(int descriptor)
{
    struct stat raw = {};
    return fstat(descriptor, &raw) == 0 ? fromStat(raw) : FileState();
}

bool FileState::isRegular() const
{
    return type == S_IFREG;
}

bool FileState::isSameFileAs(const FileState &other) const
{
    return exists && other.exists && device == other.device && inode == other.inode;
}

bool FileState::operator==(const FileState &other) const
{
    return exists == other.exists && type == other.type && device == other.device
        && inode == other.inode && size == other.size && modified == other.modified
        && changed == other.changed;
}

bool FileState::operator!=(const FileState &other) const
{
    return !(*this == other);
}
