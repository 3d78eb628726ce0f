// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filelock.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

/// Protects an image while a build writes a new one in its place.
///
/// The older image is kept as IMAGE.loomwright-backup, which is empty when there was none. If the host
/// is killed, the file remains, and the next guard of the same image restores it first.
/// IMAGE.loomwright-lock prevents a second build of the same image. When the host is killed, the lock
/// lasts until the runner has terminated the stitcher.
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
    /// @return an empty text, or why the older image could not be removed; the next build would
    /// restore it
    QString accept();
    /// The build has failed: moves what it wrote to IMAGE.partial and restores the older image.
    /// @return an empty text, or what failed
    QString reject();
    /// Where reject() has moved what the build wrote; empty when it wrote nothing.
    QString partialFile() const;

    /// The descriptor of the lock, for the runner to inherit; -1 without a lock.
    int lockDescriptor() const;
    /// Leaves the lock to the runner, which is still running.
    void leaveLock();

    /// Whether a build of @p image moves, replaces or removes files named like @p file.
    static bool isReserved(const QString &image, const QString &file);

private:
    QString lockImage();
    QString restore();
    QString moveAside();
    QString markAsNew();
    QString freePartialName() const;

    QString image;
    QString backup;
    QString partial;
    QString keptPartial; ///< What a killed host has left, moved there by this guard.
    bool hasPartial = false;
    bool hasOlder = false;
    bool isProtecting = false;
    std::unique_ptr<FileLock> lock;
};
