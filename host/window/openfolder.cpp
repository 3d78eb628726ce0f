// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/openfolder.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("OpenFolder", text);
}

} // namespace

QString openFolder(const QString &path)
{
    const QString shownPath = QDir::toNativeSeparators(path);
    if (!QFileInfo(path).isDir()) {
        return tr("The folder %1 does not exist.").arg(shownPath);
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        return tr("No program was found to open the folder %1.").arg(shownPath);
    }
    return {};
}
