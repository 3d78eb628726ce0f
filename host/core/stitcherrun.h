// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

/// One run of the stitcher under the runner, from the host's side.
///
/// The plug-in finds the runner first in the search path and starts it instead of the stitcher. The
/// runner reports how the stitcher ends through a socket, which no other process inherits.
class StitcherRun : public QObject
{
    Q_OBJECT

public:
    /// Creates a run that waits for start().
    explicit StitcherRun(QObject *parent = nullptr);
    /// Terminates everything that is still running, and waits for its end.
    ~StitcherRun() override;

    /// Calls @p begin, during which the plug-in must start its stitcher: PATH, TMPDIR and the
    /// runner's variables are set meanwhile. ended() follows even when nothing was started, but
    /// never before this call returns. Call it once.
    /// @param stitcher absolute path of the stitcher
    /// @param workDirectory the value for TMPDIR
    /// @param begin makes the plug-in start its stitcher
    /// @param lock a file descriptor that the runner keeps open as well until it ends; -1 for none
    /// @return an empty text, or why nothing could be started, in which case ended() does not
    /// follow
    QString start(const QString &stitcher, const QString &workDirectory,
                  const std::function<void()> &begin, int lock = -1);
    /// Terminates the stitcher and everything it has started; ended() follows.
    void stop();

    /// Whether the plug-in has started the runner.
    bool hasStarted() const;
    /// The error number if the runner could not start the stitcher; else 0.
    int startError() const;
    /// The stitcher's exit status; -1 when it did not exit by itself or the status is unknown.
    int exitStatus() const;
    /// The signal that ended the stitcher; 0 when none did.
    int signalNumber() const;
    /// Whether processes were still running some time after the stitcher had ended by itself. They
    /// have been terminated.
    bool hasLeftProcesses() const;
    /// Whether stop() or a signal to the runner has terminated the stitcher.
    bool wasStopped() const;
    /// Whether the runner has ended as it should; it was killed otherwise.
    bool hasFinished() const;
    /// Whether the runner is still running.
    bool isRunning() const;

signals:
    /// All processes of the stitcher have ended, and the plug-in has relayed its output.
    void ended();

private:
    void readStatus();
    void settle();
    void afterReadyEvents(void (StitcherRun::*next)());
    bool isReaped() const;

    int socket = -1;
    std::unique_ptr<QSocketNotifier> notifier;
    int runnerProcess = 0;
    int startErrorNumber = 0;
    int stitcherExitStatus = -1;
    int stitcherSignal = 0;
    bool hasLeftover = false;
    bool isStopped = false;
    bool isFinished = false;
    int settleRounds = 0;
};
