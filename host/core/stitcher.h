// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Where the stitcher and its runner are searched for.

#include <QString>

/// Where the stitcher is, or why there is none.
struct StitcherLocation {
    QString file;    ///< Absolute path; empty when there is a problem.
    QString problem; ///< In a sentence; empty when the file can be started.
};

/// Finds the stitcher: @p chosenFile if it is not empty, else the first executable file named
/// tamblin-stitcher in PATH that is not the runner of this program.
StitcherLocation locateStitcher(const QString &chosenFile);

/// The directory of the runner, which the plug-in starts in place of the stitcher: below the
/// program's directory (a build directory), else where it is installed; empty when it is in
/// neither.
QString runnerDirectory();
