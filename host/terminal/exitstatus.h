// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// Exit status of the program, for scripts.
enum ExitStatus {
    Success = 0,      ///< Success.
    Failed = 1,       ///< An input was rejected, or a check, a validation or the build failed.
    UsageError = 2,   ///< The command line is invalid; nothing was done.
    PluginProblem = 3 ///< The plug-in could not be loaded.
};
