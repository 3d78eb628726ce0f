// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

struct CommandInfo;

/// What the user asked for on the command line. Each option's table entry names its member.
struct CommandLine {
    QString pluginFile;
    QString target;

    QString projectFile;
    bool isLocked = false; ///< Whether inputs and stitcher must match the manifest.
    QString configInput;
    QString directory;
    QStringList files;
    QStringList settings; ///< NAME=VALUE, the name being a key as well.
    QString imageFile;

    const CommandInfo *command = nullptr; ///< Null when no command is given.
    /// The arguments of the command, or an unknown command with its arguments.
    QStringList arguments;
    QString outputFile;
    bool isDryRun = false;
    bool isUnchecked = false; ///< Whether to build in spite of errors that are not fatal.
    QString stitcherFile;
    QString timeoutText; ///< As it was given, in seconds.
    QString manifestFile;
    bool isWorkKept = false;
    bool areNamesWanted = false; ///< Whether to print only names, for scripts.

    bool isJson = false;
    bool isVerbose = false;
    bool isQuiet = false;
    bool isHelpWanted = false;
    bool isVersionWanted = false;

    int timeoutMs = 0; ///< How long the stitcher may run, in milliseconds; 0 for forever.

    /// What is wrong with the command line; empty when it is valid.
    QString problem;
};

/// The argument that means standard input.
const char standardInputName[] = "-";

/// Parses the program's arguments, of which the first is the program's name.
CommandLine parseCommandLine(const QStringList &arguments);
