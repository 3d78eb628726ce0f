// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/signalwatch.h"

class OutputQueue;

/// Turns everything that interrupts the program into one Qt signal: the signals of a SignalWatch,
/// and a reader that closes its end of the output (PIPE).
class InterruptWatch : public QObject
{
    Q_OBJECT

public:
    /// @param output must outlive this object
    explicit InterruptWatch(const OutputQueue &output, QObject *parent = nullptr);

signals:
    void interrupted(int signalNumber);

private:
    SignalWatch signalWatch;
};
