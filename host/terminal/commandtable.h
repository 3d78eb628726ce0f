// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <vector>

struct CommandContext;

/// An option, for the parser and the help.
struct OptionInfo {
    const char *name;        ///< Without the dashes.
    const char *shortName;   ///< One letter; null for none.
    const char *value;       ///< Placeholder for the value in the help; null if it takes none.
    const char *description; ///< One sentence.
    bool isRepeatable = false;
    bool mayBeEmpty = false; ///< Whether the value may be empty.
};

/// What a command needs before it can run.
enum class CommandNeeds { Nothing, Plugin };

/// A command, for the parser and the help.
struct CommandInfo {
    const char *name;
    const char *arguments; ///< As in a usage line; empty for none.
    int minArguments;
    int maxArguments;
    const char *summary;             ///< A few words without a full stop.
    const char *description;         ///< A few sentences, in lines of at most 80 characters.
    std::vector<OptionInfo> options; ///< The command's own options.
    const char *example;
    CommandNeeds needs;
    /// Runs the command; returns the program's exit status. Null for a command that only shows
    /// help.
    int (*function)(CommandContext &context);
};

/// All commands, in the order in which the help lists them.
const std::vector<CommandInfo> &commandTable();
/// The command named @p name; null when there is none.
const CommandInfo *findCommand(const QString &name);
QStringList commandNames();

/// The options that name inputs; every command that loads a plug-in takes them.
const std::vector<OptionInfo> &inputOptions();
/// The options that every command takes.
const std::vector<OptionInfo> &generalOptions();

/// The name of an option as it is typed, "-o, --output FILE".
QString optionUsage(const OptionInfo &option);
