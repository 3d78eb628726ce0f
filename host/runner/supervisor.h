// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/runner/processtree.h"
#include "host/runner/runnerprotocol.h"

/// The exit status that shells use for a program that could not be started.
constexpr int startFailedStatus = 127;

/// Runs the stitcher as the host asks for, and leaves none of its processes behind.
///
/// When this process is killed, the kernel kills the stitcher as well. The processes that the
/// stitcher has started become children of this one's parent.
class Supervisor
{
public:
    /// This process must be a child subreaper. Both descriptors must be closed on exec.
    /// @param hostSocket the connection to the host
    /// @param signalSource a signalfd for SIGCHLD and for signals that ask this process to end; all
    /// are blocked
    Supervisor(const RunnerRequest &hostRequest, int hostSocket, int signalSource);

    /// Waits for the host's permission, runs the stitcher, and waits for the host's last command.
    /// @param arguments for the stitcher, null-terminated; the first one is replaced
    /// @return how the runner has to end: a status as waitpid() returns it
    int run(char **arguments);

private:
    enum class Event {
        Start = int(HostCommand::Start),
        Stop = int(HostCommand::Stop),
        Finish = int(HostCommand::Finish),
        HostGone,
        TimedOut,
        LeftBehind,
        None
    };

    void report(RunnerStatus::Kind kind, int value = 0) const;
    void startStitcher(char **arguments);
    [[noreturn]] void becomeStitcher(char **arguments, pid_t supervisor) const;
    Event waitForEnd();
    Event nextEvent(Clock::time_point end) const;
    bool takeSignals() const;
    void reportEnd(Event end) const;
    int statusAfter(Event end) const;

    RunnerRequest request;
    int host;
    int signals;
    ProcessTree processes{-1};
};
