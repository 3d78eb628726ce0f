// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/runner/runnerprotocol.h"

#include <optional>

/// The runner's end of the connection to the host.
class HostConnection
{
public:
    /// @param runnerSocket is closed on exec; not closed by this object
    explicit HostConnection(int runnerSocket);

    /// For poll().
    int descriptor() const;
    /// Takes the first message, which has arrived before the runner starts. Empty if it has not.
    std::optional<RunnerRequest> takeRequest() const;
    /// Waits for the next command; empty when the host has died.
    std::optional<HostCommand> nextCommand() const;
    /// Sends a report. Errors are ignored: a host that has died needs none.
    void report(RunnerStatus::Kind kind, int value = 0) const;

private:
    int socket;
};
