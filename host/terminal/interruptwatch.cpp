// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/interruptwatch.h"

#include <csignal>
#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

const int watchedSignals[] = {SIGINT, SIGTERM, SIGHUP};

int eventHandle = -1;

extern "C" void noteSignal(int)
{
    const eventfd_t one = 1;
    // Nothing can be done about a failure inside a signal handler.
    [[maybe_unused]] const auto written = write(eventHandle, &one, sizeof one);
}

} // namespace

InterruptWatch::InterruptWatch(QObject *parent)
    : QObject(parent)
    , signalHandle(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    eventHandle = signalHandle;
    notifier = new QSocketNotifier(signalHandle, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        notifier->setEnabled(false);
        emit interrupted();
    });
    for (const int number : watchedSignals) {
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = int(SA_RESETHAND) | SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

InterruptWatch::~InterruptWatch()
{
    for (const int number : watchedSignals) {
        std::signal(number, SIG_DFL);
    }
    eventHandle = -1;
    close(signalHandle);
}
