// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

QString absolutePath(const QString &path)
{
    return path.isEmpty() ? path : QDir::current().absoluteFilePath(path);
}

QByteArray contentOf(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

QString temporaryDirectoryProblem()
{
    const QString chosen = qEnvironmentVariable("TMPDIR");
    if (chosen.isEmpty() || QFileInfo(chosen).isDir()) {
        return {};
    }
    return (QFileInfo::exists(chosen) ? QCoreApplication::translate(
                "Files", "TMPDIR is set to %1, which is not a directory.")
                                      : QCoreApplication::translate(
                                          "Files", "TMPDIR is set to %1, which does not exist."))
        .arg(chosen);
}
