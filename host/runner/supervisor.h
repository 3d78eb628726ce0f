// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/runner/runnerstatus.h"

#include <csignal>
#include <sys/types.h>

/// Runs the stitcher and leaves no process of it behind.
///
/// As a child subreaper this process becomes the parent of every descendant whose own parent ends,
/// however it was started. So all of them are gone exactly when there is no child left to wait for.
/// If this process itself is killed by SIGKILL, the kernel kills the stitcher as well; what the
/// stitcher had started then goes on.
class Supervisor
{
public:
    /// @param hostSocket this end of the socket to the host; taken over
    explicit Supervisor(int hostSocket);

    /// Runs the stitcher @p file to its end, then terminates what is left of it.
    /// @param arguments null-terminated; the first one is replaced by @p file
    /// @return the status as waitpid() gives it
    int run(const char *file, char **arguments);

private:
    bool prepare();
    [[noreturn]] void becomeStitcher(const char *file, char **arguments) const;
    void waitForEnd();
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

/// Ends this process in the way that @p status tells: with the same exit status, or by the same
/// signal but without a core dump.
[[noreturn]] void endLike(int status);
