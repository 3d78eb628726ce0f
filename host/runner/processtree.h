// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <ctime>
#include <optional>
#include <sys/types.h>

using Clock = std::chrono::steady_clock;

/// The time until @p end; 0 when it has passed.
timespec timeUntil(Clock::time_point end);

/// The descendants of this process, which all are or become its children before they end.
///
/// This process must be a child subreaper, so that it becomes the parent of every descendant whose
/// own parent ends, however it was started. So all of them have ended exactly when there is no
/// child left to wait for. SIGCHLD must be blocked.
class ProcessTree
{
public:
    /// @param process the process ID of the one child whose status is of interest
    explicit ProcessTree(pid_t process);

    /// Reaps the children that have ended.
    /// @return whether a child is left
    bool reap();
    /// The status of the child of interest, as waitpid() returns it, when it has been reaped.
    std::optional<int> status() const;
    /// Terminates every descendant: first with SIGTERM, some time later with SIGKILL. Gives up on
    /// those that cannot be killed.
    void terminate();

private:
    pid_t child;
    std::optional<int> childStatus;
};
