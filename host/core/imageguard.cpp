// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/imageguard.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace {

/// Replaces @p target. Returns 0 or the error number.
int renameFile(const QString &file, const QString &target)
{
    const bool renamed
        = std::rename(QFile::encodeName(file).constData(), QFile::encodeName(target).constData())
        == 0;
    return renamed ? 0 : errno;
}

} // namespace

ImageGuard::ImageGuard(const QString &imageFile)
    : image(imageFile)
    , backup(imageFile + QLatin1String(".loomwright-backup"))
{
}

ImageGuard::~ImageGuard()
{
    if (isProtecting) {
        reject();
    }
}

QString ImageGuard::protect()
{
    QString problem = lockImage();
    if (problem.isEmpty()) {
        problem = moveAside();
    }
    isProtecting = problem.isEmpty();
    if (!isProtecting) {
        lock.reset();
    }
    return problem;
}

void ImageGuard::accept()
{
    QFile::remove(backup);
    isProtecting = false;
    lock.reset();
}

QString ImageGuard::reject()
{
    QString problem = restore();
    isProtecting = false;
    lock.reset();
    return problem;
}

QString ImageGuard::partialFile() const
{
    return hasPartial ? partial : QString();
}

QString ImageGuard::lockImage()
{
    const QString directory = QFileInfo(image).absolutePath();
    if (!QFileInfo(directory).isDir()) {
        return tr("The image's directory %1 does not exist.").arg(directory);
    }
    const QString file = image + QLatin1String(".loomwright-lock");
    const FileState existing = FileState::ofLink(file);
    if (existing.exists && !existing.isRegular()) {
        return tr("%1 is in the way.").arg(file);
    }
    lock = std::make_unique<QLockFile>(file);
    // A build may take any time: the lock becomes stale only when its host has ended.
    lock->setStaleLockTime(0);
    if (lock->tryLock(0)) {
        return {};
    }

    const QLockFile::LockError error = lock->error();
    qint64 process = 0;
    QString host;
    QString program;
    const bool known = lock->getLockInfo(&process, &host, &program);
    lock.reset();
    if (error != QLockFile::LockFailedError) {
        return tr("The image's directory %1 cannot be written to.").arg(directory);
    }
    return known ? tr("%1 is being built by another process, number %2 on %3 (lock file %4).")
                       .arg(image, QString::number(process), host, file)
                 : tr("%1 is being built by another process (lock file %2).").arg(image, file);
}

QString ImageGuard::moveAside()
{
    // Left by a host that was killed. Only a file of this user may become the image.
    const FileState left = FileState::ofLink(backup);
    if (left.exists && !(left.isRegular() && left.owner == geteuid())) {
        return tr("%1 is in the way.").arg(backup);
    }
    if (left.exists) {
        QString problem = restore();
        if (!problem.isEmpty()) {
            return problem;
        }
        keptPartial = partialFile();
        hasPartial = false;
    }

    const FileState existing = FileState::ofLink(image);
    if (existing.exists && !existing.isRegular()) {
        return tr("The image %1 is not a regular file; symlinks are not followed.").arg(image);
    }
    if (!existing.exists) {
        return markAsNew();
    }
    const int error = renameFile(image, backup);
    return error == 0
        ? QString()
        : tr("The older image %1 cannot be moved aside: %2.").arg(image, qt_error_string(error));
}

/// Leaves an empty backup: when the host is killed, it shows that there was no older image, and that
/// what is there is incomplete.
QString ImageGuard::markAsNew()
{
    QFile marker(backup);
    return marker.open(QIODevice::WriteOnly)
        ? QString()
        : tr("%1 cannot be created: %2.").arg(backup, marker.errorString());
}

/// A name for what was written: an older partial file is replaced, but not one that a killed host has
/// left, nor anything that is not a regular file.
QString ImageGuard::freePartialName() const
{
    const QString first = image + QLatin1String(".partial");
    QString name = first;
    for (int number = 2;; ++number) {
        const FileState state = FileState::ofLink(name);
        if (!state.exists || (state.isRegular() && name != keptPartial)) {
            return name;
        }
        name = first + QLatin1Char('.') + QString::number(number);
    }
}

/// Moves what a build wrote to the partial file and restores the older image.
QString ImageGuard::restore()
{
    const FileState written = FileState::ofLink(image);
    if (written.isRegular() && written.size == 0) {
        QFile::remove(image);
    } else if (written.exists) {
        partial = freePartialName();
        const int error = renameFile(image, partial);
        if (error != 0) {
            return tr("What was written is still at %1, the older image at %2: %3.")
                .arg(image, backup, qt_error_string(error));
        }
        hasPartial = true;
    }

    const FileState older = FileState::ofLink(backup);
    if (older.exists && older.size == 0) {
        QFile::remove(backup);
        return {};
    }
    const int error = older.exists ? renameFile(backup, image) : 0;
    return error == 0
        ? QString()
        : tr("The older image is still at %1: %2.").arg(backup, qt_error_string(error));
}
