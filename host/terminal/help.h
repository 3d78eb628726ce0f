// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct CommandInfo;

/// The usage line and the list of commands.
QString commandOverview();
/// The text for --help: all commands and the common options.
QString helpText();
/// The help for one command: usage, description, options and an example.
QString helpText(const CommandInfo &command);
