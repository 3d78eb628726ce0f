// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/terminal/report.h"

#include <QStringList>

struct CommandInfo;

/// What the user asked for on the command line.
struct CommandLine {
    QString pluginFile;
    QString target;

    QString projectFile;
    bool isLocked = false; ///< Whether inputs must match the manifest.
    QString configInput;
    QString directory;
    QStringList files;
    /// Names or keys with their values.
    QList<QPair<QString, QString>> settings;
    QString imageFile;

    const CommandInfo *command = nullptr; ///< Null when no command is given.
    /// The arguments of the command, or an unknown command with its arguments.
    QStringList arguments;
    QString outputFile;
    bool isDryRun = false;
    bool isChecked = true; ///< False to build without the checks.
    QString stitcherFile;
    int timeoutMs = 0; ///< How long the stitcher may run, in milliseconds; 0 for forever.
    QString manifestFile;
    bool isWorkKept = false;
    bool areNamesWanted = false; ///< Whether to print only names, for scripts.

    Report::Format format = Report::Format::Text;
    Report::Verbosity verbosity = Report::Verbosity::Normal;
    bool isHelpWanted = false;
    bool isVersionWanted = false;

    /// What is wrong with the command line; empty when it is valid.
    QString problem;
    /// Whether to show the list of commands with the error.
    bool isCommandUnknown = false;
};

/// The argument that means standard input.
const char standardInputName[] = "-";

/// Parses the program's arguments, of which the first is the program's name.
CommandLine parseCommandLine(const QStringList &arguments);
