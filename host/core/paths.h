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

/// The content of @p file; empty if it cannot be read.
QByteArray contentOf(const QString &file);

/// @p word quoted for a shell if necessary.
QString shellQuoted(const QString &word);

/// Why the directory for temporary files cannot be used; empty when it can. Qt would silently use the
/// root directory instead.
QString temporaryDirectoryProblem();

/// Opens a file without a name, in memory, so that nothing is left when the program is killed.
bool openMemoryFile(QFile *file);

/// The path of an open file of this process, which the plug-in can open as well.
QString descriptorPath(const QFile &file);
