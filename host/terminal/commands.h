// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filestate.h"

#include <QList>
#include <QStringList>

#include <functional>

struct CommandLine;
struct FileHash;
class ImageJob;
class PluginSession;
class QFile;
class Report;
class SignalWatch;

/// The context of a command. Commands that need no plug-in get no session and no job.
struct CommandContext {
    const CommandLine &commandLine;
    Report &report;
    const SignalWatch &signalWatch;
    PluginSession *session = nullptr;
    ImageJob *job = nullptr;
    bool areProblemsNoted = false;
    /// Of the input files, from before they were checked or hashed.
    FileStates inputStates = {};

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

/// Applies all inputs of the command line, even after one was refused, so that one run shows all
/// errors.
/// @return false when the plug-in cannot be used any more
bool applyInputs(CommandContext &context);

/// Notes the states of @p files that have not been noted yet, before they are checked or hashed.
void noteStates(CommandContext &context, const QStringList &files);

/// Failed when there is a problem with the inputs, else Success.
int inputStatus(const CommandContext &context);

/// Adds the problems of the job to the JSON document, once.
void noteProblems(CommandContext &context);

/// Runs an operation of the plug-in on @p file. If it fails, the errors that it reported become
/// problems of the JSON document.
/// @return whether it succeeded
bool runOperation(CommandContext &context, const QString &file,
                  const std::function<bool()> &operation);

/// Runs the checks and adds their results to the JSON document.
/// @param listed whether to show them and everything else that blocks a build to people too
void reportChecks(CommandContext &context, bool listed = true);

/// Hashes @p files with progress on the terminal.
/// @return false when a signal interrupted it
bool hashFiles(CommandContext &context, const QStringList &files, QList<FileHash> *hashes);

/// Opens a file without a name, in memory, so that nothing is left when the program is killed.
bool openMemoryFile(QFile *file);

/// The path of an open file of this process, which the plug-in can open as well.
QString descriptorPath(const QFile &file);

/// Reads standard input to its end and replaces it by a copy in memory, which can be opened by path
/// and read more than once.
/// @param path set to the path of the copy
/// @return an empty text, or why it could not be read
QString copyStandardInput(const CommandContext &context, QString *path);
