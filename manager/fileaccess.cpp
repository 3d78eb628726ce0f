// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/fileaccess.h"

#include <QFile>
#include <QFileInfo>

bool openForReading(QFile *file)
{
    return QFileInfo(*file).isFile() && file->open(QIODevice::ReadOnly);
}

bool openForWriting(QFile *file)
{
    const QFileInfo existing(*file);
    return (existing.isFile() || !existing.exists()) && file->open(QIODevice::WriteOnly);
}
