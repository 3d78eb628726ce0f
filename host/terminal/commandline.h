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
    bool isLocked = false; ///< Whether inputs must be what the manifest records.
    QString configInput;
    QString directory;
    QStringList files;
    /// Pairs of a name or key and the value for it.
    QList<QPair<QString, QString>> settings;
    QString imageFile;

    const CommandInfo *command = nullptr; ///< Null when none is given.
    QStringList arguments;                ///< Those of the command.
    QString outputFile;
    bool isDryRun = false;
    bool isChecked = true; ///< False to build without the checks.
    QString stitcherFile;
    int timeoutMs = 0; ///< How long the stitcher may run, in milliseconds; 0 for forever.
    QString manifestFile;
    bool isWorkKept = false;
    bool areNamesWanted = false; ///< Names alone, for scripts.

    Report::Format format = Report::Format::Text;
    Report::Verbosity verbosity = Report::Verbosity::Normal;
    bool isHelpWanted = false;
    bool isVersionWanted = false;

    /// What is wrong with the command line; empty when nothing is.
    QString problem;
    /// Whether the list of commands is the answer to that.
    bool isCommandUnknown = false;
};

/// The argument that stands for standard input.
const char standardInputName[] = "-";

/// Reads the program's arguments, the program's name first.
CommandLine parseCommandLine(const QStringList &arguments);
