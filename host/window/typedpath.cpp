// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/typedpath.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

QString typedPath(const QString &text)
{
    QString literal = QDir::fromNativeSeparators(text);
    const QString trimmed = literal.trimmed();
    if (QFileInfo::exists(literal)) {
        return literal;
    }
    if (trimmed.startsWith(QLatin1String("file://"))) {
        return QUrl(trimmed).toLocalFile();
    }
    return trimmed == QLatin1String("~") || trimmed.startsWith(QLatin1String("~/"))
        ? QDir::homePath() + trimmed.mid(1)
        : trimmed;
}
