// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// How the two processes of the runner deal with signals.

#include <csignal>

/// Blocks SIGCHLD and the signals that ask a process to end, to be waited for. Ignored signals, for
/// example under nohup, stay ignored.
/// @return what has been blocked
sigset_t blockSignals();

/// Ends this process as @p status says, which is one of waitpid(): with the same exit status, or by
/// the same signal but without a core dump.
[[noreturn]] void endLike(int status);
