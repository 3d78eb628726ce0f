// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// Whether a process can be created now: there are enough file descriptors, and the limit of processes
/// is not reached.
///
/// Qt 5.15 takes a fork that failed for a process with the number -1. Its destructor then sends SIGKILL
/// to that number, which means to every process of the user. So this must be known before.
bool canCreateProcess();
