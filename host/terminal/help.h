// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct CommandInfo;

/// The usage line and the list of commands.
QString commandOverview();
/// The text for --help: all commands and the options that they share.
QString helpText();
/// The text for one command: usage, what it does, its options and an example.
QString helpText(const CommandInfo &command);
