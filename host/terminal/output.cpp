// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/output.h"

#include "host/core/signalwatch.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <poll.h>
#include <unistd.h>

using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

constexpr milliseconds lastWords(1000);

/// Does nothing: the error of write() is enough. Unlike SIG_IGN, a handler is not inherited by the
/// stitcher.
extern "C" void acceptSignal(int) { }

} // namespace

Output::Output(const SignalWatch &watch)
    : signalWatch(watch)
    , isPipeIgnored(SignalWatch::isIgnored(SIGPIPE))
    , patience(lastWords)
{
    if (!isPipeIgnored) {
        std::signal(SIGPIPE, acceptSignal);
    }
}

void Output::write(int descriptor, const QByteArray &bytes)
{
    int written = 0;
    while (written < bytes.size() && !hasFailed(descriptor)) {
        if (!waitUntilWritable(descriptor)) {
            fail(descriptor, EAGAIN);
            return;
        }
        // A pipe that is ready takes this much without blocking.
        const int size = std::min(bytes.size() - written, PIPE_BUF);
        const ssize_t count = ::write(descriptor, bytes.constData() + written, size_t(size));
        if (count >= 0) {
            written += int(count);
        } else if (errno != EINTR && errno != EAGAIN) {
            fail(descriptor, errno);
        }
    }
}

/// False when the time after a signal is over.
bool Output::waitUntilWritable(int descriptor)
{
    if (signalWatch.waitFor(descriptor, POLLOUT)) {
        return true;
    }
    const auto start = steady_clock::now();
    pollfd target = {descriptor, POLLOUT, 0};
    const auto timeout = std::chrono::ceil<milliseconds>(patience);
    const bool writable = poll(&target, 1, int(timeout.count())) > 0;
    patience -= std::min<std::chrono::nanoseconds>(patience, steady_clock::now() - start);
    return writable;
}

void Output::fail(int descriptor, int error)
{
    failed.insert(descriptor);
    if (error == EPIPE && !isPipeIgnored) {
        signalWatch.receive(SIGPIPE);
    }
}

bool Output::hasFailed(int descriptor) const
{
    return failed.count(descriptor) > 0;
}
