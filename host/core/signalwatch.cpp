// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/signalwatch.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

int handlerDescriptor = -1;
volatile std::sig_atomic_t lastSignal = 0;

extern "C" void noteSignal(int number)
{
    lastSignal = number;
    const eventfd_t value = 1;
    // A failure cannot be handled inside a signal handler.
    [[maybe_unused]] const auto written = write(handlerDescriptor, &value, sizeof value);
}

} // namespace

SignalWatch::SignalWatch(QObject *parent)
    : QObject(parent)
    , eventDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    handlerDescriptor = eventDescriptor;
    auto notifier = new QSocketNotifier(eventDescriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        eventfd_t count = 0;
        if (eventfd_read(eventDescriptor, &count) == 0) {
            emit received(lastSignal);
        }
    });
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        if (isIgnored(number)) {
            continue;
        }
        watchedSignals.append(number);
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

SignalWatch::~SignalWatch()
{
    for (const int number : qAsConst(watchedSignals)) {
        std::signal(number, SIG_DFL);
    }
    handlerDescriptor = -1;
    close(eventDescriptor);
}

bool SignalWatch::isIgnored(int signalNumber)
{
    struct sigaction action = {};
    return sigaction(signalNumber, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}
