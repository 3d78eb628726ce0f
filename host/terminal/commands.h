// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

struct CommandLine;
class PluginSession;
class Report;

/// Applies the inputs of the command line and runs its command.
/// @return the program's exit status
int runCommand(const CommandLine &commandLine, PluginSession *session, Report *report);
