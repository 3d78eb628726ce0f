// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// What the program's exit status tells a script.
enum ExitStatus {
    Success = 0,      ///< Everything that was asked for was done.
    Failed = 1,       ///< An input, a check, a validation or the build failed.
    UsageError = 2,   ///< The command line is wrong; nothing was done.
    PluginProblem = 3 ///< The plug-in could not be loaded.
};
