// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QVector>

class OutputQueue;

/// Turns the signals that end a program (INT, TERM, HUP), and a reader that has closed its end of
/// the output (PIPE), into a Qt signal while it lives. A second INT, TERM or HUP ends the program at
/// once. A signal that is ignored, as under nohup, stays ignored.
class InterruptWatch : public QObject
{
    Q_OBJECT

public:
    /// @param output must outlive this object
    explicit InterruptWatch(const OutputQueue &output, QObject *parent = nullptr);
    ~InterruptWatch() override;

    /// Whether the program was started with @p signalNumber ignored.
    static bool isIgnored(int signalNumber);

signals:
    void interrupted(int signalNumber);

private:
    int eventDescriptor;
    QVector<int> watchedSignals;
};
