// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// What QProcess does not handle when the system can create no more processes.

class QProcess;

/// Whether there are enough file descriptors to start a process, as far as QProcess does not notice
/// it itself: with too few, QProcess of Qt 4.6 stays "already running" forever.
bool hasFreeDescriptors();

/// Whether @p process, which has just been started, has no process because fork() failed.
///
/// QProcess of Qt 5.15 does not notice it: it takes the process for starting, with the number -1.
/// Its destructor would send SIGKILL to that number, which means to every process of the user, and
/// close a file descriptor that is not its own. Such an object must be abandoned, not deleted.
bool hasFailedToFork(const QProcess &process);

/// Closes the pipes of @p process, for which hasFailedToFork() is true, and silences it. Only its
/// memory stays in use.
void abandon(QProcess *process);
