// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/imageguard.h"

#include "host/core/filestate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace {

const QLatin1String backupSuffix(".loomwright-backup");
const QLatin1String lockSuffix(".loomwright-lock");
const QLatin1String partialSuffix(".partial");

/// Replaces @p target. Returns 0 or the error number.
int renameFile(const QString &file, const QString &target)
{
    const bool renamed
        = std::rename(QFile::encodeName(file).constData(), QFile::encodeName(target).constData())
        == 0;
    return renamed ? 0 : errno;
}

QString notRegular(const QString &file)
{
    return ImageGuard::tr("%1 is not a regular file.").arg(file);
}

/// The path of the directory entry @p file, which need not exist, without symlinks to directories.
QString entryPath(const QFileInfo &file)
{
    return QDir(QFileInfo(file.absolutePath()).canonicalFilePath()).filePath(file.fileName());
}

} // namespace

ImageGuard::ImageGuard(const QString &imageFile)
    : image(imageFile)
    , backup(imageFile + backupSuffix)
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

QString ImageGuard::accept()
{
    QFile older(backup);
    const bool removed = !FileState::ofLink(backup).exists || older.remove();
    isProtecting = false;
    lock.reset();
    return removed ? QString()
                   : tr("%1 was written, but the older image %2 cannot be removed: %3. Remove it "
                        "before the next build, which would restore it.")
                         .arg(image, backup, older.errorString());
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

int ImageGuard::lockDescriptor() const
{
    return lock ? lock->descriptor() : -1;
}

void ImageGuard::leaveLock()
{
    if (lock) {
        lock->leave();
    }
}

bool ImageGuard::isReserved(const QString &image, const QString &file)
{
    const QFileInfo info(file);
    const QString imagePath = entryPath(QFileInfo(image));
    const QString path = info.exists() ? info.canonicalFilePath() : entryPath(info);
    const QString suffix = path.mid(imagePath.size());
    return path.startsWith(imagePath)
        && (suffix == backupSuffix || suffix == lockSuffix || suffix.startsWith(partialSuffix));
}

QString ImageGuard::lockImage()
{
    const QString directory = QFileInfo(image).absolutePath();
    if (!QFileInfo(directory).isDir()) {
        return tr("The image's directory %1 does not exist.").arg(directory);
    }
    const QString file = image + lockSuffix;
    const FileState existing = FileState::ofLink(file);
    if (existing.exists && !existing.isRegular()) {
        return notRegular(file);
    }
    lock = std::make_unique<FileLock>(file);
    const int error = lock->lock();
    if (error == EWOULDBLOCK) {
        return tr("%1 is being built by another process (lock file %2).").arg(image, file);
    }
    return error == 0
        ? QString()
        : tr("The lock file %1 cannot be created: %2.").arg(file, qt_error_string(error));
}

QString ImageGuard::moveAside()
{
    // Left by a host that was killed. Only a file of this user may become the image.
    const FileState left = FileState::ofLink(backup);
    if (left.exists && !(left.isRegular() && left.owner == geteuid())) {
        return left.isRegular() ? tr("%1 belongs to another user.").arg(backup)
                                : notRegular(backup);
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
    hasOlder = error == 0;
    return hasOlder
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
    const QString first = image + partialSuffix;
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
    if (!older.exists) {
        return hasOlder ? tr("The older image was removed during the build.") : QString();
    }
    const int error = renameFile(backup, image);
    return error == 0
        ? QString()
        : tr("The older image is still at %1: %2.").arg(backup, qt_error_string(error));
}
