// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Files that appear whole or not at all: each is written in a private directory beside its final
/// path, then renamed.

#include "host/core/filestate.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A new directory that only this user can enter. The destructor removes it with all that it
/// contains, without following symlinks.
class PrivateDirectory
{
public:
    /// Does nothing before create().
    PrivateDirectory() = default;
    ~PrivateDirectory();
    PrivateDirectory(const PrivateDirectory &) = delete;
    PrivateDirectory &operator=(const PrivateDirectory &) = delete;

    /// Creates the directory in @p parent, named @p prefix and six characters. Call it once.
    /// @return an empty text, or why it could not be created
    QString create(const QString &parent, const QString &prefix);
    /// The absolute path; empty before create() and after remove().
    QString path() const;
    /// Whether the path still leads to the directory that was created.
    bool isIntact() const;
    /// Lets the directory stay.
    void keep();
    /// Removes it now, unless it is kept. False when something of it is left.
    bool remove();

private:
    QString directory;
    FileState created;
    bool isKept = false;
};

/// A file on its way to its final path.
class StagedFile
{
public:
    /// Will replace @p finalPath, an absolute path whose symlinks resolvedTarget() has resolved.
    explicit StagedFile(const QString &finalPath);

    /// Creates the private directory. Nothing is written at the final path before publish().
    /// @return an empty text, or why nothing can be written there
    QString create();
    /// Where to write: the name of the final path in the private directory.
    QString path() const;
    /// The private directory.
    PrivateDirectory &directory();
    /// The names of the other files in the private directory.
    QStringList otherNames() const;

    /// Renames one of the other files to its place beside the final path.
    /// @return an empty text, or why it could not be renamed
    QString publishOther(const QString &name) const;
    /// Renames the file to its final path and stores that durably. The private directory stays.
    /// @return an empty text, or why it could not be renamed
    QString publish() const;

private:
    QString target;
    PrivateDirectory stage;
};

/// The file that writing to @p file would replace, as an absolute path without symlinks. Resolve a
/// path once, before a longer operation: a symlink that appears later is replaced, not followed.
QString resolvedTarget(const QString &file);

/// Why no file can be created in @p directory, as the system words it; empty when one can.
QString directoryProblem(const QString &directory);

/// Why writeWhole() would fail for @p target, a resolved path; empty when nothing is known to be in
/// the way.
QString writeProblem(const QString &target);

/// Replaces @p target, a resolved path, by a file with @p content. An existing file keeps its
/// permissions. On failure it is unchanged.
/// @return an empty text, or why it could not be written
QString writeWhole(const QString &target, const QByteArray &content);
