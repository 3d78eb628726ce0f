// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/pluginfiles.h"

#include "plugin/iloomwrightplugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

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

QStringList installedPlugins(const QString &chosenFile)
{
    QStringList plugins;
    for (const QString &candidate : pluginCandidates(chosenFile)) {
        const QDir directory = QFileInfo(candidate).absoluteDir();
        const QFileInfoList libraries = directory.entryInfoList(
            {QStringLiteral("*.so"), QStringLiteral("*.so.*")}, QDir::Files);
        for (const QFileInfo &library : libraries) {
            const QString file = library.canonicalFilePath();
            const QString identifier
                = QPluginLoader(file).metaData().value(QStringLiteral("IID")).toString();
            if (identifier == QLatin1String(ILoomwrightPlugin_iid) && !plugins.contains(file)) {
                plugins.append(file);
            }
        }
    }
    plugins.sort();
    return plugins;
}
