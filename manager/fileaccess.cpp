// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/fileaccess.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>

bool openForReading(QFile *file)
{
    return QFileInfo(*file).isFile() && file->open(QIODevice::ReadOnly);
}

int openForWriting(const QString &path)
{
    const mode_t permissions = 0666; // Less the process's umask, as with QFile.
    return open(QFile::encodeName(path).constData(),
                O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, permissions);
}
