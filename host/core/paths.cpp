// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <sys/mman.h>

QString absolutePath(const QString &path)
{
    return path.isEmpty() || path.startsWith(QLatin1Char('/')) ? path
                                                               : pathIn(QDir::currentPath(), path);
}

QString pathIn(const QString &directory, const QString &name)
{
    return directory.endsWith(QLatin1Char('/')) ? directory + name
                                                : directory + QLatin1Char('/') + name;
}

QString placeOf(const QString &path)
{
    const QFileInfo info(absolutePath(path));
    return pathIn(canonicalDirectory(info.path()), info.fileName());
}

QString canonicalDirectory(const QString &directory)
{
    const QString canonical = QFileInfo(directory).canonicalFilePath();
    return canonical.isEmpty() ? directory : canonical;
}

QByteArray contentOf(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

QString shellQuoted(const QString &word)
{
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9_./:=@%+,-]+\\z"));
    if (plain.match(word).hasMatch()) {
        return word;
    }
    return QLatin1Char('\'') + QString(word).replace(QLatin1Char('\''), QLatin1String("'\\''"))
        + QLatin1Char('\'');
}

QString temporaryDirectoryProblem()
{
    const QString chosen = qEnvironmentVariable("TMPDIR");
    if (chosen.isEmpty() || QFileInfo(chosen).isDir()) {
        return {};
    }
    return QStringLiteral("TMPDIR is set to %1, which %2.")
        .arg(chosen, QLatin1String(QFileInfo::exists(chosen) ? "is a file" : "does not exist"));
}

bool openMemoryFile(QFile *file)
{
    const int descriptor = memfd_create("loomwright", MFD_CLOEXEC);
    return descriptor >= 0
        && file->open(descriptor, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
}

QString descriptorPath(const QFile &file)
{
    return QStringLiteral("/proc/self/fd/%1").arg(file.handle());
}
