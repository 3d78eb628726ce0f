// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The settings that the user can edit in the settings dialog.
struct Settings {
    QString pluginFile;       ///< Absolute path; empty to search for it.
    QString stitcherFile;     ///< Absolute path; empty to search for it in PATH.
    int timeLimitSeconds = 0; ///< How long the stitcher may run; 0 for forever.
};

/// The stored settings. An invalid stored value is treated as unset.
Settings readSettings();
void writeSettings(const Settings &settings);
