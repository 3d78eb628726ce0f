// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/signalwatch.h"

class OutputQueue;

/// Turns what interrupts a program into one Qt signal while it lives: the signals of a SignalWatch,
/// and a reader that has closed its end of the output (PIPE).
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
