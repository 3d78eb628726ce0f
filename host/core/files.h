// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Paths and contents of files.

#include <QByteArray>
#include <QString>

/// @p path resolved against the current directory; an empty path stays empty.
QString absolutePath(const QString &path);

/// The content of @p file; empty if it cannot be read.
QByteArray contentOf(const QString &file);

/// Why the directory for temporary files cannot be used; empty when it can. Qt would silently use the
/// root directory instead.
QString temporaryDirectoryProblem();
