// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/signalwatch.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/eventfd.h>

namespace {

// A signal handler may access them: they are free of locks, and the descriptor never changes again.
std::atomic<int> firstSignal(0);
static_assert(std::atomic<int>::is_always_lock_free);
int eventDescriptor = -1;

extern "C" void receiveSignal(int number)
{
    const int errorBefore = errno;
    int none = 0;
    if (firstSignal.compare_exchange_strong(none, number)) {
        // Never read, so that every poll() and every event loop sees it from now on.
        eventfd_write(eventDescriptor, 1);
    }
    errno = errorBefore;
}

/// Unlike SIG_IGN, programs that are started do not inherit a handler.
extern "C" void acceptFileSizeSignal(int) { }

} // namespace

SignalWatch::SignalWatch()
{
    // A file that must not grow further is an error of write(), which has a message.
    if (!isIgnored(SIGXFSZ)) {
        std::signal(SIGXFSZ, acceptFileSizeSignal);
    }
    eventDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        if (!isIgnored(number)) {
            // Without SA_RESTART: a blocked system call returns.
            struct sigaction action = {};
            action.sa_handler = receiveSignal;
            sigaction(number, &action, nullptr);
        }
    }
}

int SignalWatch::received() const
{
    return firstSignal;
}

bool SignalWatch::hasReceived() const
{
    return received() != 0;
}

void SignalWatch::receive(int signalNumber) const
{
    receiveSignal(signalNumber);
}

bool SignalWatch::waitFor(int descriptor, short events) const
{
    pollfd sources[] = {{descriptor, events, 0}, {eventDescriptor, POLLIN, 0}};
    while (!hasReceived()) {
        if (poll(sources, 2, -1) > 0 && sources[0].revents != 0) {
            return true;
        }
    }
    return false;
}

void SignalWatch::whenReceived(QObject *receiver, const std::function<void()> &action) const
{
    auto notifier = new QSocketNotifier(eventDescriptor, QSocketNotifier::Read, receiver);
    QObject::connect(notifier, &QSocketNotifier::activated, receiver, [notifier, action] {
        notifier->setEnabled(false);
        action();
    });
}

void SignalWatch::endLikeReceived() const
{
    if (hasReceived()) {
        std::signal(received(), SIG_DFL);
        std::raise(received());
    }
}

bool SignalWatch::isIgnored(int signalNumber)
{
    struct sigaction action = {};
    return sigaction(signalNumber, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}
