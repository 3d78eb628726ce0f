// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Where plug-ins are looked for.

#include <QStringList>

/// The files that may be the plug-in, in the order in which they are tried.
///
/// @param chosenFile a file that the user named; when it is not empty, it is the only candidate.
/// Otherwise the candidate is what the environment variable LOOMWRIGHT_PLUGIN names; without that,
/// the library beside the program (a build directory), then the one in the install directory.
QStringList pluginCandidates(const QString &chosenFile);

/// The plug-ins in the plug-in directory, as absolute paths in alphabetical order, each library once.
///
/// The directory is that of the file that @p chosenFile or LOOMWRIGHT_PLUGIN names; without both, the
/// program's and the install directory.
QStringList installedPlugins(const QString &chosenFile);
