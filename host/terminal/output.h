// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <chrono>
#include <set>

class SignalWatch;

/// Writes to file descriptors, blocking or not, and waits for slow readers. A signal ends the
/// waiting: after that, what is not read within one second in total is discarded. A reader that
/// closes its end is noted as signal PIPE, unless that is ignored.
class Output
{
public:
    /// @param watch must outlive this object
    explicit Output(const SignalWatch &watch);

    void write(int descriptor, const QByteArray &bytes);
    /// Whether a write to @p descriptor has failed; nothing more is written to it.
    bool hasFailed(int descriptor) const;

private:
    bool waitUntilWritable(int descriptor);
    void fail(int descriptor, int error);

    const SignalWatch &signalWatch;
    const bool isPipeIgnored;
    std::chrono::nanoseconds patience; ///< How long readers may still take after a signal.
    std::set<int> failed;
};
