// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/interruptwatch.h"

#include "host/terminal/outputqueue.h"

#include <QSocketNotifier>

#include <csignal>

InterruptWatch::InterruptWatch(const OutputQueue &output, QObject *parent)
    : QObject(parent)
{
    connect(&signalWatch, &SignalWatch::received, this, &InterruptWatch::interrupted);
    if (SignalWatch::isIgnored(SIGPIPE)) {
        return;
    }
    auto readerNotifier
        = new QSocketNotifier(output.readerGoneDescriptor(), QSocketNotifier::Read, this);
    connect(readerNotifier, &QSocketNotifier::activated, this, [this, readerNotifier] {
        readerNotifier->setEnabled(false);
        emit interrupted(SIGPIPE);
    });
}
