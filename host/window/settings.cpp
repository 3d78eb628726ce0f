// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/settings.h"

#include <QSettings>

namespace {

const QLatin1String pluginKey("plugin");
const QLatin1String stitcherKey("stitcher");
const QLatin1String timeLimitKey("timeLimitSeconds");

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
