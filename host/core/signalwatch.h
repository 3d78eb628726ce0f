// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QVector>

/// Turns the signals that end a program (INT, TERM, HUP, QUIT) into a Qt signal while it lives; there
/// is one at a time. Further signals are reported as well and do not end the program: `timeout` and a
/// closed terminal send two, and the image must be restored in any case. A signal that is ignored, as
/// under nohup, stays ignored.
class SignalWatch : public QObject
{
    Q_OBJECT

public:
    /// Watches the signals that are not ignored.
    explicit SignalWatch(QObject *parent = nullptr);
    ~SignalWatch() override;

    /// Whether the program was started with @p signalNumber ignored.
    static bool isIgnored(int signalNumber);

signals:
    /// @p signalNumber has arrived.
    void received(int signalNumber);

private:
    int eventDescriptor;
    QVector<int> watchedSignals;
};
