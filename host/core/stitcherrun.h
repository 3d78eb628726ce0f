// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

/// One run of the stitcher under the runner, from the host's side.
///
/// The plug-in finds the runner first in the search path and starts it instead of the stitcher. What
/// becomes of the stitcher arrives through a socket, which the runner alone inherits.
class StitcherRun : public QObject
{
    Q_OBJECT

public:
    /// Creates a run that waits for start().
    explicit StitcherRun(QObject *parent = nullptr);
    /// Terminates what still runs, and waits for its end.
    ~StitcherRun() override;

    /// Calls @p begin, during which the plug-in must start its stitcher: PATH, TMPDIR and the
    /// runner's variables are set meanwhile. ended() follows, never before this call returns; also
    /// when nothing was started. Call it once.
    /// @param stitcher absolute path of the stitcher
    /// @param workDirectory what TMPDIR is set to
    /// @param begin makes the plug-in start its stitcher
    /// @return an empty text, or why nothing could be started; ended() does not follow then
    QString start(const QString &stitcher, const QString &workDirectory,
                  const std::function<void()> &begin);
    /// Terminates the stitcher with all that it has started; ended() follows.
    void stop();

    /// Whether the plug-in has started the runner.
    bool hasStarted() const;
    /// Why the runner could not start the stitcher, an error number; 0 when it could.
    int startError() const;
    /// The stitcher's exit status; -1 when it did not exit by itself or nothing is known.
    int exitStatus() const;
    /// The signal that ended the stitcher; 0 when none did.
    int signalNumber() const;

signals:
    /// All of the stitcher is gone, and its output has passed through the plug-in.
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
    int settleRounds = 0;
};
