// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// What a build would start, without starting it.

#include <QByteArray>
#include <QString>
#include <QStringList>

class PluginSession;

/// What a build would start.
struct CommandPreview {
    QString problem;          ///< Why it is not known; empty when it is.
    QStringList commandLine;  ///< The stitcher and its arguments.
    QByteArray configuration; ///< What the plug-in wrote for it.
};

/// Lets the plug-in of @p session begin a build in which a script that writes down its arguments
/// stands in for @p stitcher. Runs an event loop until that has ended.
CommandPreview previewCommand(PluginSession *session, const QString &stitcher);
