// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/imageguard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

const QLatin1String backupSuffix(".loomwright-backup");
const QLatin1String lockSuffix(".loomwright-lock");
const QLatin1String partialSuffix(".partial"); // Or with a number, ".partial.2".

/// Replaces @p target. Returns 0 or the error number.
int renameFile(const QString &file, const QString &target)
{
    const QByteArray from = QFile::encodeName(file);
    const QByteArray to = QFile::encodeName(target);
    // rename() does nothing if both are hard links to the same file.
    const bool linked = FileState::ofLink(file).isSameFileAs(FileState::ofLink(target));
    const bool done = linked ? unlink(from.constData()) == 0
                             : std::rename(from.constData(), to.constData()) == 0;
    return done ? 0 : errno;
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
    , directory(QFileInfo(imageFile).absolutePath())
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
        finish();
    }
    return problem;
}

QString ImageGuard::accept()
{
    QString problem = interference();
    if (problem.isEmpty()) {
        problem = removeBackup();
    }
    finish();
    return problem;
}

QString ImageGuard::reject()
{
    QString problem = interference();
    if (problem.isEmpty()) {
        problem = restore();
    }
    finish();
    return problem;
}

QString ImageGuard::removeBackup()
{
    const FileState state = FileState::ofLink(backup);
    QFile file(backup);
    if (state.exists && !state.hasSameContentAs(backupState)) {
        return tr("%1 was changed during the build. The next build would take it for an older "
                  "image.")
            .arg(backup);
    }
    if (state.exists && !file.remove()) {
        return tr("%1 cannot be removed: %2. The next build would take it for an older image.")
            .arg(backup, file.errorString());
    }
    return {};
}

void ImageGuard::finish()
{
    isProtecting = false;
    unlockBackup();
    lock.reset();
}

/// False when another process has locked the backup. Where files opened for reading cannot be locked, as
/// on NFS, it is left unlocked.
bool ImageGuard::lockBackup()
{
    unlockBackup();
    const int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
    backupDescriptor = open(QFile::encodeName(backup).constData(), flags);
    return backupDescriptor < 0 || flock(backupDescriptor, LOCK_EX | LOCK_NB) == 0
        || errno != EWOULDBLOCK;
}

void ImageGuard::unlockBackup()
{
    if (backupDescriptor >= 0) {
        close(std::exchange(backupDescriptor, -1));
    }
}

QString ImageGuard::busyText() const
{
    return tr("%1 is being built by another process (lock file %2).")
        .arg(image, image + lockSuffix);
}

/// Why the files under the image's name may be those of another build; empty when they are not.
QString ImageGuard::interference() const
{
    if (!FileState::of(directory).isSameFileAs(directoryState)) {
        return tr("%1 is no longer the directory that it was at the start. Its files were not "
                  "touched; look for %2 in the original one.")
            .arg(directory, QFileInfo(backup).fileName());
    }
    // When the lock was left to the runner, nobody else can have taken it.
    return !lock->isLocked() || lock->isIntact()
        ? QString()
        : tr("The lock file %1 was removed or replaced during the build, so another build may have "
             "written the image.")
              .arg(image + lockSuffix);
}

bool ImageGuard::isOlderImage(const FileState &file) const
{
    return hasOlder && file.hasSameContentAs(backupState);
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
    static const QRegularExpression suffixes(
        QStringLiteral("\\A(|\\.partial(\\.\\d+)?|\\.loomwright-(backup|lock))\\z"));
    return path.startsWith(imagePath) && suffixes.match(path.mid(imagePath.size())).hasMatch();
}

QString ImageGuard::lockImage()
{
    directoryState = FileState::of(directory);
    if (directoryState.type != S_IFDIR) {
        return tr("The image's directory %1 does not exist.").arg(directory);
    }
    const QString file = image + lockSuffix;
    lock = std::make_unique<FileLock>(file);
    switch (const int error = lock->lock()) {
    case 0:
        return {};
    case EWOULDBLOCK:
        return busyText();
    case EEXIST:
        return tr("%1 is not a lock file.").arg(file);
    default:
        return tr("The lock file %1 cannot be opened: %2.").arg(file, qt_error_string(error));
    }
}

QString ImageGuard::moveAside()
{
    // Left by a host that was killed. Only a file of this user may become the image.
    const FileState left = FileState::ofLink(backup);
    if (left.exists && !left.isRegular()) {
        return tr("%1 is not a regular file.").arg(backup);
    }
    if (left.exists && left.owner != geteuid()) {
        return tr("%1 belongs to another user. If a killed build has left it, rename it to %2, or "
                  "remove it.")
            .arg(backup, image);
    }
    if (left.exists && !lockBackup()) {
        return busyText();
    }
    if (left.exists) {
        backupState = left;
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
    QString problem = existing.exists ? moveImage() : markAsNew();
    backupState = FileState::ofLink(backup);
    lockBackup();
    return problem;
}

QString ImageGuard::moveImage()
{
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
    if (isOlderImage(written)) {
        if (isOlderImage(FileState::ofLink(backup))) {
            QFile::remove(backup);
        }
        return {};
    }
    if (written.isRegular() && written.size == 0) {
        QFile::remove(image);
    } else if (written.exists) {
        partial = freePartialName();
        const int error = renameFile(image, partial);
        if (error != 0) {
            return tr("What was written cannot be moved away from %1: %2. The next build moves it.")
                .arg(image, qt_error_string(error));
        }
        hasPartial = true;
    }

    const FileState older = FileState::ofLink(backup);
    if (!older.exists) {
        return tr("%1 was removed during the build.").arg(backup);
    }
    if (!older.hasSameContentAs(backupState)) {
        return tr("%1 was changed during the build, and is not restored. The next build would take "
                  "it "
                  "for an older image.")
            .arg(backup);
    }
    if (older.size == 0) {
        QFile::remove(backup);
        return {};
    }
    const int error = renameFile(backup, image);
    return error == 0
        ? QString()
        : tr("The older image is still at %1: %2.").arg(backup, qt_error_string(error));
}
