// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

class QObject;

/// Notes the first of the signals that end a program (INT, TERM, HUP, QUIT), instead of ending it:
/// the program looks at received() between its phases, cleans up and calls endLikeReceived().
/// Further signals change nothing; `timeout` and a closed terminal send two. A signal that is
/// ignored at the start, as under nohup, stays ignored.
///
/// There is one, from the start of main() to the end of the process.
class SignalWatch
{
public:
    /// Begins to watch the signals that are not ignored.
    SignalWatch();
    SignalWatch(const SignalWatch &) = delete;
    SignalWatch &operator=(const SignalWatch &) = delete;

    /// The first signal; 0 when none has arrived.
    int received() const;
    /// Whether a signal has arrived.
    bool hasReceived() const;
    /// Behaves as if @p signalNumber had arrived.
    void receive(int signalNumber) const;
    /// Waits until @p descriptor is ready for @p events, those of poll(), or until a signal
    /// arrives.
    /// @return false when a signal has arrived
    bool waitFor(int descriptor, short events) const;
    /// Has the event loop call @p action once when a signal arrives or has arrived already, unless
    /// @p receiver is deleted before. There must not be two receivers at a time.
    void whenReceived(QObject *receiver, const std::function<void()> &action) const;
    /// Ends the program by the signal that has arrived; returns when none has. The parent process
    /// must see the signal: a shell's loop would continue otherwise.
    void endLikeReceived() const;

    /// Whether @p signalNumber is ignored.
    static bool isIgnored(int signalNumber);
};
