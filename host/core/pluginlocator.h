// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// The files that may be the plug-in, in the order in which they are tried.
///
/// @param chosenFile a file that the user named; when it is not empty, it is the only candidate.
/// Otherwise the candidate is what the environment variable LOOMWRIGHT_PLUGIN names; without that,
/// the library beside the program (a build folder), then the one in the install folder.
QStringList pluginCandidates(const QString &chosenFile);
