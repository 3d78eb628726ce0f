// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/settings.h"

#include "host/core/stitcher.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QSettings>

namespace {

const QLatin1String pluginKey("plugin");
const QLatin1String stitcherKey("stitcher");
const QLatin1String timeLimitKey("timeLimitSeconds");

QString tr(const char *text)
{
    return QCoreApplication::translate("Settings", text);
}

} // namespace

Settings readSettings()
{
    const QSettings stored;
    Settings settings;
    settings.pluginFile = stored.value(pluginKey).toString();
    settings.stitcherFile = stored.value(stitcherKey).toString();
    settings.timeLimitSeconds = qMax(0, stored.value(timeLimitKey).toInt());
    return settings;
}

void writeSettings(const Settings &settings)
{
    QSettings stored;
    stored.setValue(pluginKey, settings.pluginFile);
    stored.setValue(stitcherKey, settings.stitcherFile);
    stored.setValue(timeLimitKey, settings.timeLimitSeconds);
}

QString pluginFileProblem(const QString &file)
{
    if (file.isEmpty()) {
        return {};
    }
    const QFileInfo info(file);
    if (!info.exists()) {
        return tr("There is no such file.");
    }
    if (info.isDir()) {
        return tr("This is a folder, not a file.");
    }
    return QLibrary::isLibrary(file) ? QString()
                                     : tr("This is not a plug-in: its name does not contain .so.");
}

QString stitcherFileProblem(const QString &file)
{
    return file.isEmpty() ? QString() : locateStitcher(file).problem;
}
