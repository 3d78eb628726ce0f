// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>

/// Turns the signals that end a program (INT, TERM, HUP) into a Qt signal while it lives. A second
/// such signal ends the program at once.
class InterruptWatch : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatch(QObject *parent = nullptr);
    ~InterruptWatch() override;

signals:
    void interrupted();

private:
    int signalHandle;
    QSocketNotifier *notifier = nullptr;
};
