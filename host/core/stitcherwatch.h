// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

/// Learns when the stitcher has ended, which the plug-in does not tell.
///
/// A pipe is opened before the stitcher is started, and the stitcher and all that it starts inherit
/// its writing end: the pipe reads end-of-file when the last of them is gone. In case the stitcher
/// closes what it inherits, its own end is watched as well.
class StitcherWatch : public QObject
{
    Q_OBJECT

public:
    explicit StitcherWatch(QObject *parent = nullptr);
    ~StitcherWatch() override;

    /// Call right before the stitcher is started. False when the system has no pipe left.
    bool prepare();
    /// Call right after the start, before the event loop runs: from now on ended() can come. It
    /// comes as well when nothing was started.
    void begin();
    /// Whether begin() found a stitcher that runs or has just ended.
    bool hasChild() const;
    /// Kills whatever of the stitcher still runs; ended() follows.
    void kill();

signals:
    /// All of the stitcher is gone, and the plug-in has taken note of it.
    void ended();

private:
    void pipeClosed();
    void childEnded();
    void settleWhenGone();
    void settle();
    void killHolders();
    bool isReaped() const;

    QSet<int> earlierChildren;
    int pipeRead = -1;
    int pipeWrite = -1;
    int childHandle = -1;
    int child = 0;
    int settleRounds = 0;
    std::unique_ptr<QSocketNotifier> pipeNotifier;
    std::unique_ptr<QSocketNotifier> childNotifier;
    QTimer killTimer;
};
