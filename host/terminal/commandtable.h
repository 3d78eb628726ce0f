// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/terminal/commandline.h"

#include <variant>
#include <vector>

struct CommandContext;

/// The member of CommandLine that an option sets: a flag, a text, or a list for an option that may
/// be repeated.
using OptionMember
    = std::variant<bool CommandLine::*, QString CommandLine::*, QStringList CommandLine::*>;

/// An option, for the parser and the help.
struct OptionInfo {
    const char *name;        ///< Without the dashes.
    const char *shortName;   ///< One letter; null for none.
    const char *value;       ///< Placeholder for the value in the help; null if it takes none.
    const char *description; ///< One sentence.
    OptionMember member;

    bool isRepeatable() const;
};

/// What a command needs before it can run.
enum class CommandNeeds {
    Nothing,
    Plugin, ///< A plug-in with default values.
    Inputs  ///< A plug-in to which the inputs of the command line have been applied.
};

/// A command, for the parser and the help.
struct CommandInfo {
    const char *name;
    const char *arguments;           ///< As in a usage line: "", "FILE", "FILE..." or "[FILE]".
    const char *summary;             ///< A few words without a full stop.
    const char *description;         ///< A few sentences, in lines of at most 79 characters.
    std::vector<OptionInfo> options; ///< The command's own options.
    const char *example;
    CommandNeeds needs;
    /// Runs the command; returns the program's exit status. Null for a command that only shows
    /// help.
    int (*function)(CommandContext &context);
    bool listsProblems = false; ///< Whether it shows all problems itself.

    int minArguments() const;
    int maxArguments() const;
};

/// All commands, in the order in which the help lists them.
const std::vector<CommandInfo> &commandTable();
/// The command named @p name; null when there is none.
const CommandInfo *findCommand(const QString &name);
QStringList commandNames();

/// The options that name inputs, for the commands that need inputs.
const std::vector<OptionInfo> &inputOptions();
/// The options that every command takes.
const std::vector<OptionInfo> &generalOptions();

/// All options that @p command takes; its own come first.
std::vector<OptionInfo> optionsOf(const CommandInfo &command);
/// All options of all commands, each name once.
const std::vector<OptionInfo> &allOptions();
