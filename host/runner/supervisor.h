// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/runner/hostconnection.h"
#include "host/runner/processtree.h"

#include <functional>

/// The exit status that shells use for a program that could not be started.
constexpr int startFailedStatus = 127;

/// Runs the stitcher as the host asks for, and leaves none of its processes behind.
///
/// When this process is killed, the kernel kills the stitcher as well. The processes that the stitcher
/// has started become children of this one's parent.
class Supervisor
{
public:
    /// This process must be a child subreaper that has called blockSignals(). All descriptors must be
    /// closed on exec.
    /// @param signalSource a signalfd for the blocked signals
    /// @param stopSource a pipe whose other end is closed when the stitcher has to be terminated
    Supervisor(const RunnerRequest &hostRequest, const HostConnection &connection, int signalSource,
               int stopSource);

    /// Waits until the host lets the stitcher start, runs it, and waits for the host's last command.
    /// @param arguments for the stitcher, null-terminated; the first one is replaced
    /// @return how the runner has to end: a status as waitpid() returns it
    int run(char **arguments);

private:
    enum class Event { None, Start, Stop, Finish, HostGone, TimedOut, LeftBehind };

    void startStitcher(char **arguments);
    [[noreturn]] void becomeStitcher(char **arguments, pid_t supervisor) const;
    Event waitForEnd();
    Event waitWhile(const std::function<bool()> &isRunning, Clock::time_point end, Event late);
    Event nextEvent(int timeoutMs);
    Event nextCommand() const;
    bool takeSignals() const;
    void reportEnd(Event end) const;
    int statusAfter(Event end) const;

    RunnerRequest request;
    HostConnection host;
    int signals;
    int stopPipe;
    ProcessTree processes{-1};
};
