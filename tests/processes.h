// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "files.h"

#include <QDir>

const char processMark[] = "LOOMWRIGHT_TEST";

/// The running processes that were started with the variable processMark set to @p mark.
inline QStringList processesOf(const QString &mark)
{
    const QByteArray entry = QByteArray(processMark) + '=' + QFile::encodeName(mark) + '\0';
    QStringList processes;
    for (const QString &process : QDir("/proc").entryList({"[1-9]*"}, QDir::Dirs)) {
        if (readFile("/proc/" + process + "/environ").contains(entry)) {
            processes << process + ' ' + readFile("/proc/" + process + "/comm").trimmed();
        }
    }
    return processes;
}
