// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Paths and contents of files.

#include <QByteArray>
#include <QString>

class QFile;

/// @p path resolved against the current directory; an empty path stays empty.
QString absolutePath(const QString &path);

/// @p directory as an absolute path without symlinks; unchanged if it does not exist.
QString canonicalDirectory(const QString &directory);

/// The path of @p name in @p directory. QDir would take a name that begins with a colon for the
/// path of a resource.
QString pathIn(const QString &directory, const QString &name);

/// The absolute path of @p path, in a directory without symlinks if that exists; a symlink at the
/// path itself stays.
QString placeOf(const QString &path);

/// The content of @p file; empty if it cannot be read.
QByteArray contentOf(const QString &file);

/// @p word quoted for a shell if necessary.
QString shellQuoted(const QString &word);

/// Why the directory for temporary files cannot be used; empty when it can. Qt would silently use
/// the root directory instead.
QString temporaryDirectoryProblem();

/// Opens a file without a name, in memory, so that nothing is left when the program is killed.
bool openMemoryFile(QFile *file);

/// The path of an open file of this process, which the plug-in can open as well.
QString descriptorPath(const QFile &file);
