// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <vector>

struct CommandContext;

/// One option, as the parser and the help know it.
struct OptionInfo {
    const char *name;        ///< Without the dashes.
    const char *shortName;   ///< One letter; null for none.
    const char *value;       ///< What the value stands for; null for an option without one.
    const char *description; ///< One sentence.
    bool isRepeatable = false;
    bool mayBeEmpty = false; ///< Whether the value may be an empty text.
};

/// What has to be there before a command runs.
enum class CommandNeeds { Nothing, Plugin };

/// One command, as the parser and the help know it.
struct CommandInfo {
    const char *name;
    const char *arguments; ///< As in a usage line; empty for none.
    int minArguments;
    int maxArguments;
    const char *summary;             ///< A few words without a full stop.
    const char *description;         ///< Some sentences, in lines of at most 80 characters.
    std::vector<OptionInfo> options; ///< The command's own ones.
    const char *example;
    CommandNeeds needs;
    /// Does the work; returns the program's exit status. Null for a command that only shows help.
    int (*function)(CommandContext &context);
};

/// All commands, in the order of the help.
const std::vector<CommandInfo> &commandTable();
/// The command of that name; null when there is none.
const CommandInfo *findCommand(const QString &name);
QStringList commandNames();

/// The options that name inputs; every command that needs a plug-in takes them.
const std::vector<OptionInfo> &inputOptions();
/// The options that every command takes.
const std::vector<OptionInfo> &generalOptions();

/// The name of an option as it is typed, "-o, --output FILE".
QString optionUsage(const OptionInfo &option);
