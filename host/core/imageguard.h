// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filestate.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

class QLockFile;

/// Keeps an image safe while a build writes a new one in its place.
///
/// The older image waits as IMAGE.loomwright-backup, which is empty when there was none. When the host
/// was killed, it is still there: the next guard of the same image restores it first. IMAGE.loomwright-lock keeps a second build
/// of the image away; one that a killed host has left does not count.
class ImageGuard
{
    Q_DECLARE_TR_FUNCTIONS(ImageGuard)

public:
    /// Nothing is done before protect().
    explicit ImageGuard(const QString &imageFile);
    /// Rejects what was neither accepted nor rejected.
    ~ImageGuard();
    ImageGuard(const ImageGuard &) = delete;
    ImageGuard &operator=(const ImageGuard &) = delete;

    /// Locks the image and moves an older one aside. Call it once.
    /// @return an empty text, or why the image cannot be built; nothing has been changed then
    QString protect();
    /// The image is good: the older one is removed, the lock as well.
    void accept();
    /// The build has failed: what it wrote is moved to IMAGE.partial, the older image is put back.
    /// @return an empty text, or what could not be done
    QString reject();
    /// Where reject() has put what the build wrote; empty when it wrote nothing.
    QString partialFile() const;

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
    bool isProtecting = false;
    std::unique_ptr<QLockFile> lock;
};
