// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filelock.h"
#include "host/core/filestate.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

/// Protects an image while a build writes a new one in its place.
///
/// The older image is kept as IMAGE.loomwright-backup, which is empty when there was none. If the host
/// is killed, the file remains, and the next guard of the same image restores it first.
/// IMAGE.loomwright-lock prevents a second build of the same image. When the host is killed, the lock
/// lasts until the runner has terminated the stitcher. The backup is locked too, in case somebody removes
/// the lock file.
class ImageGuard
{
    Q_DECLARE_TR_FUNCTIONS(ImageGuard)

public:
    /// Does nothing before protect().
    explicit ImageGuard(const QString &imageFile);
    /// Calls reject() unless accept() or reject() was called.
    ~ImageGuard();
    ImageGuard(const ImageGuard &) = delete;
    ImageGuard &operator=(const ImageGuard &) = delete;

    /// Locks the image and moves an older one aside. Call it once.
    /// @return an empty text, or why the image cannot be built; nothing has been changed then
    QString protect();
    /// The image is good: removes the older one and the lock.
    /// @return an empty text, or why the image may not be the one that was built, or what is in the way
    /// of the next build
    QString accept();
    /// The build has failed: moves what it wrote to IMAGE.partial and restores the older image. Touches
    /// nothing if the directory or the lock file was replaced.
    /// @return an empty text, or what failed
    QString reject();
    /// Whether @p file is the older image itself, which was moved aside.
    bool isOlderImage(const FileState &file) const;
    /// Where reject() has moved what the build wrote; empty when it wrote nothing.
    QString partialFile() const;

    /// The descriptor of the lock, for the runner to inherit; -1 without a lock.
    int lockDescriptor() const;
    /// Leaves the lock to the runner, which is still running.
    void leaveLock();

    /// Whether @p file has the name of @p image or of another file that a build of it writes, moves,
    /// replaces or removes.
    static bool isReserved(const QString &image, const QString &file);

private:
    QString lockImage();
    QString interference() const;
    QString removeBackup();
    bool lockBackup();
    void unlockBackup();
    QString busyText() const;
    QString restore();
    QString moveAside();
    QString moveImage();
    QString markAsNew();
    QString freePartialName() const;
    void finish();

    QString image;
    QString backup;
    QString directory;
    QString partial;
    QString keptPartial;      ///< What a killed host has left, moved there by this guard.
    FileState directoryState; ///< When the image was locked.
    FileState backupState;    ///< When the image was moved aside.
    int backupDescriptor = -1;
    bool hasPartial = false;
    bool hasOlder = false;
    bool isProtecting = false;
    std::unique_ptr<FileLock> lock;
};
