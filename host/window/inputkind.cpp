// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/inputkind.h"

#include <QFile>
#include <QFileInfo>

namespace {

/// Leaves room for white space before a JSON object.
const int startLength = 256;

bool isJsonObject(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) && file.read(startLength).trimmed().startsWith('{');
}

} // namespace

InputKind inputKindOf(const QString &file)
{
    const QFileInfo info(file);
    if (info.isDir()) {
        return InputKind::Directory;
    }
    if (info.suffix() == QLatin1String("loomwright") || (info.isFile() && isJsonObject(file))) {
        return InputKind::Project;
    }
    return info.suffix().compare(QLatin1String("txt"), Qt::CaseInsensitive) == 0
        ? InputKind::Configuration
        : InputKind::File;
}
