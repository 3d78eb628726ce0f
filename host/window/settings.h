// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What the user has chosen in the settings dialog.
struct Settings {
    QString pluginFile;       ///< Absolute path; empty to look for it.
    QString stitcherFile;     ///< Absolute path; empty to look for it in the search path.
    int timeLimitSeconds = 0; ///< How long the stitcher may run; 0 for forever.
};

/// The user's settings as they were stored last. A stored value that is invalid counts as unset.
Settings readSettings();
void writeSettings(const Settings &settings);

/// Why @p file cannot be a plug-in, in a sentence; empty when it may be one or nothing is chosen.
QString pluginFileProblem(const QString &file);
/// Why @p file cannot be the stitcher, in a sentence; empty when it can or nothing is chosen.
QString stitcherFileProblem(const QString &file);
