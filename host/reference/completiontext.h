// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The names of all commands, separated by spaces.
QString bashCommands();
/// One branch of a case statement per command: the options that it takes.
QString bashOptions();
/// One branch of a case statement per option with a value: the kind of value.
QString bashValues();

/// One line per command, "name:summary", quoted.
QString zshCommands();
/// One branch of a case statement per command: its options, for _arguments.
QString zshOptions();

/// All "complete" lines.
QString fishCompletions();
