// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// Whether a process can be created now: there are enough file descriptors, and the limit of processes
/// is not reached.
///
/// QProcess cannot be asked: Qt 5.15 takes a fork that failed for a process with the number -1, and its
/// destructor sends SIGKILL to that number, which means to every process of the user. Qt 4.6 aborts the
/// program when it has too few descriptors.
bool canCreateProcess();
