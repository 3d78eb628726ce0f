// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Where plug-ins are looked for.

#include <QStringList>

/// The files that may be the plug-in, in search order.
///
/// @param chosenFile a file named by the user. If it is not empty, it is the only candidate.
/// Otherwise the candidate is the file named by the environment variable LOOMWRIGHT_PLUGIN; without
/// that, the library beside the program (a build directory), then the one in the install directory.
QStringList pluginCandidates(const QString &chosenFile);

/// The plug-ins in the directory of @p chosenFile, as absolute paths in alphabetical order, each
/// library once.
///
/// @param chosenFile a file named by the user. If it is empty, the directory is that of the file
/// named by LOOMWRIGHT_PLUGIN; without that, the program's directory and the one of the installed
/// plug-ins are searched.
QStringList installedPlugins(const QString &chosenFile);
