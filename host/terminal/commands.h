// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filehasher.h"

#include <QStringList>

#include <functional>

struct CommandLine;
class Plugin;
class Report;
class SignalWatch;
class Values;

/// The context of a command. Commands that need no plug-in get no plug-in and no values.
struct CommandContext {
    const CommandLine &commandLine;
    Report &report;
    const SignalWatch &signalWatch;
    Plugin *plugin = nullptr;
    Values *values = nullptr;
    /// The input files and the stitcher as they were compared with the manifest of --locked.
    FileRecords lockedFiles = {};

    /// Whether a signal has arrived: what has not begun must not begin any more.
    bool isInterrupted() const;
};

/// The functions of the command table; each returns the program's exit status.
int showInfo(CommandContext &context);
int listTargets(CommandContext &context);
int listIngredients(CommandContext &context);
int runCheck(CommandContext &context);
int validateFiles(CommandContext &context);
int writeConfig(CommandContext &context);
int writeProjectFile(CommandContext &context);
int buildImage(CommandContext &context);
int verifyManifest(CommandContext &context);

/// Applies all inputs of the command line, even after one was rejected, so that one run shows all
/// errors. A signal ends it early.
void applyInputs(CommandContext &context);

/// Failed when an input was rejected or caused an error, else Success.
int inputStatus(const CommandContext &context);

/// Runs an operation of the plug-in on @p file. If it fails, the errors that it reported become
/// problems of the JSON document.
/// @return whether it succeeded
bool runOperation(CommandContext &context, const QString &file,
                  const std::function<bool()> &operation);

/// Runs the checks and adds their results to the JSON document.
/// @param listed whether to show them and all problems to people too
void reportChecks(CommandContext &context, bool listed = true);

/// Reads standard input to its end and replaces it by a copy in memory, which can be opened by path
/// and read more than once.
/// @param path set to the path of the copy
/// @return an empty text, or why it could not be read
QString copyStandardInput(const CommandContext &context, QString *path);
