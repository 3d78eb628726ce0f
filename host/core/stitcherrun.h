// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/runner/runnerprotocol.h"

#include <QMap>
#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

/// What a run of the stitcher needs.
struct StitcherRequest {
    QString stitcher;         ///< Absolute path.
    QString stagingDirectory; ///< Absolute path of the directory it writes to; may be empty.
    QString workDirectory;    ///< Absolute path; the value of TMPDIR.
    int timeoutMs = 0;        ///< How long the stitcher may run, in milliseconds; 0 for forever.
    bool isKept = false;      ///< Whether both directories stay when the host is killed.
};

/// One run of the stitcher under the runner, from the host's side.
///
/// The plug-in finds the runner first in PATH and starts it instead of the stitcher. The runner
/// starts the stitcher when permit() says so, and reports how it ends through a socket, which no
/// other process inherits. If the host dies before finish(), the runner terminates the stitcher and
/// removes the directories of the request.
class StitcherRun : public QObject
{
    Q_OBJECT

public:
    /// Creates a run that waits for start().
    explicit StitcherRun(QObject *parent = nullptr);
    /// Terminates everything that is still running, and waits for its end.
    ~StitcherRun() override;

    /// Calls @p begin, during which the plug-in must start its stitcher: PATH, TMPDIR and the
    /// runner's variables are set meanwhile. The signals follow even when nothing was started, but
    /// never before this call returns. Call it once.
    /// @param request what the runner needs to know
    /// @param begin makes the plug-in start its stitcher
    /// @return an empty text, or why nothing could be started, in which case no signal follows
    QString start(const StitcherRequest &request, const std::function<void()> &begin);
    /// Lets the runner start the stitcher. Call it once.
    void permit();
    /// Terminates the stitcher and everything it has started; stitcherEnded() follows.
    void stop();
    /// Lets the runner exit, which removes nothing; ended() follows. If the stitcher is running, it
    /// is terminated.
    void finish();

    /// The arguments with which the plug-in has started the runner, without its name; empty before
    /// started() and after ended().
    QStringList commandLine() const;
    /// The value of what the runner has reported; empty if it has not. Without
    /// RunnerStatus::Started, the plug-in has not started it. Without RunnerStatus::Finished after
    /// stitcherEnded(), it was killed or never started.
    std::optional<int> reported(RunnerStatus::Kind kind) const;

signals:
    /// The runner runs; the stitcher does not yet.
    void started();
    /// No process of the stitcher is left, or the runner was killed or never started. Emitted once.
    void stitcherEnded();
    /// The runner has ended, and the plug-in has relayed all output. Emitted once, after
    /// stitcherEnded().
    void ended();

private:
    void readStatus();
    void send(HostCommand command);
    void disconnectRunner();
    void settle();
    bool isReaped() const;

    int socket = -1;
    std::unique_ptr<QSocketNotifier> notifier;
    QMap<int, int> reports; ///< Values by RunnerStatus::Kind.
    int settleRounds = 0;
};
