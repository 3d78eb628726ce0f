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

/// Why @p file cannot be a plug-in, in a sentence; empty if it may be one or no file is chosen.
QString pluginFileProblem(const QString &file);
/// Why @p file cannot be the stitcher, in a sentence; empty if it can or no file is chosen.
QString stitcherFileProblem(const QString &file);
