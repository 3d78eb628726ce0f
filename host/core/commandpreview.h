// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Shows what a build would start, without starting it.

#include <QByteArray>
#include <QString>
#include <QStringList>

class PluginSession;

/// What a build would start.
struct CommandPreview {
    QString problem;          ///< Why it is unknown; empty when it is known.
    QStringList commandLine;  ///< The stitcher and its arguments.
    QByteArray configuration; ///< What the plug-in wrote for it.
};

/// Lets the plug-in of @p session begin a build in which a script that records its arguments
/// replaces @p stitcher. Runs an event loop until the script has ended.
CommandPreview previewCommand(PluginSession *session, const QString &stitcher);
