// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The commands with their options, in scdoc's markup.
QString manualCommands();
/// The options that name inputs, in scdoc's markup.
QString manualInputs();
/// The options that every command takes, in scdoc's markup.
QString manualOptions();
