// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/pluginlocator.h"

#include <QCoreApplication>
#include <QDir>

QStringList pluginCandidates(const QString &chosenFile)
{
    if (!chosenFile.isEmpty()) {
        return {chosenFile};
    }
    const QString fromEnvironment = qEnvironmentVariable("LOOMWRIGHT_PLUGIN");
    if (!fromEnvironment.isEmpty()) {
        return {fromEnvironment};
    }
    const QString library = QStringLiteral("libunsigned-zorv.so.1");
    const QDir programFolder(QCoreApplication::applicationDirPath());
    return {programFolder.absoluteFilePath(library),
            QDir::cleanPath(programFolder.absoluteFilePath(QStringLiteral(LOOMWRIGHT_PLUGIN_FOLDER)
                                                           + QLatin1Char('/') + library))};
}
