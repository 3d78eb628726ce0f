// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/runner/runnerstatus.h"

#include <csignal>
#include <sys/types.h>

/// Runs the stitcher and leaves none of its processes behind.
///
/// As a child subreaper, this process becomes the parent of every descendant whose own parent ends,
/// however it was started. So all of them have ended exactly when there is no child left to wait
/// for. If this process itself is killed by SIGKILL, the kernel kills the stitcher as well, but not
/// the processes that the stitcher has started.
class Supervisor
{
public:
    /// @param hostSocket the runner's end of the socket to the host; this object takes ownership
    explicit Supervisor(int hostSocket);

    /// Runs the stitcher @p file, then terminates the processes that it has left behind.
    /// @param arguments null-terminated; the first one is replaced by @p file
    /// @return the status as waitpid() returns it
    int run(const char *file, char **arguments);

private:
    bool prepare();
    [[noreturn]] void becomeStitcher(const char *file, char **arguments) const;
    void waitForEnd();
    bool waitForEvent(int timeoutMs);
    void terminateAll();
    bool reap();
    bool isHostGone() const;
    bool takeSignals() const;
    void report(RunnerStatus::Kind kind, int value) const;
    void reportEnd() const;

    int host;
    int signalDescriptor = -1;
    pid_t runner;
    pid_t stitcher = -1;
    int stitcherStatus = 0;
    bool hasEnded = false;
};

/// Ends this process as @p status says: with the same exit status, or by the same signal but
/// without a core dump.
[[noreturn]] void endLike(int status);
