// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// What the user asked for on the command line.
struct CommandLine {
    QString pluginFile;
    QString configInput;
    QString directory;
    QStringList files;
    /// Pairs of a name or key and the value for it.
    QList<QPair<QString, QString>> settings;

    QString command;
    /// The file to validate, for the command that takes one.
    QString validateFile;
    QString outputFile;
    bool isChecked = true; ///< False to stitch without the checks.
    int timeoutMs = 0;     ///< How long the stitcher may run, in milliseconds; 0 for ever.

    bool isJson = false;
    bool isQuiet = false;
    bool isHelpWanted = false;
    bool isVersionWanted = false;

    /// What is wrong with the command line; empty when nothing is.
    QString problem;
};

/// Reads the program's arguments, the program's name first.
CommandLine parseCommandLine(const QStringList &arguments);

/// The text for --help.
QString helpText();
