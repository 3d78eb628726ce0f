// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/outputqueue.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <poll.h>
#include <set>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

namespace {

/// Short texts for the same descriptor are written together, up to this many bytes.
const int maxChunkSize = 1 << 16;

struct Chunk {
    int descriptor = -1;
    QByteArray bytes;
};

/// Writes all of @p bytes; returns 0 or an error number.
int writeAll(int descriptor, const QByteArray &bytes)
{
    int written = 0;
    while (written < bytes.size()) {
        const ssize_t count
            = ::write(descriptor, bytes.constData() + written, size_t(bytes.size() - written));
        if (count >= 0) {
            written += int(count);
        } else if (errno == EAGAIN) {
            pollfd ready = {descriptor, POLLOUT, 0};
            poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

struct OutputQueue::State {
    mutable std::mutex mutex;
    std::condition_variable filled;
    std::condition_variable emptied;
    std::deque<Chunk> chunks;
    std::set<int> failed;
    bool isWriting = false;
    bool isStarted = false;
    bool isReaderGone = false;
    bool isEnding = false;
    int event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    State() = default;
    State(const State &) = delete;
    State &operator=(const State &) = delete;
    ~State()
    {
        close(event);
    }

    void run();
    void noteFailure(int descriptor, int error);
};

void OutputQueue::State::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (true) {
        filled.wait(lock, [this] { return isEnding || !chunks.empty(); });
        if (chunks.empty()) {
            return;
        }
        const Chunk chunk = std::move(chunks.front());
        chunks.pop_front();
        isWriting = true;
        const bool skipped = failed.count(chunk.descriptor) > 0;
        lock.unlock();
        const int error = skipped ? 0 : writeAll(chunk.descriptor, chunk.bytes);
        lock.lock();
        isWriting = false;
        if (error != 0) {
            noteFailure(chunk.descriptor, error);
        }
        if (chunks.empty()) {
            emptied.notify_all();
        }
    }
}

void OutputQueue::State::noteFailure(int descriptor, int error)
{
    failed.insert(descriptor);
    if (error == EPIPE) {
        isReaderGone = true;
        eventfd_write(event, 1);
    }
}

OutputQueue::OutputQueue()
    : state(std::make_shared<State>())
{
}

OutputQueue::~OutputQueue()
{
    const std::lock_guard<std::mutex> lock(state->mutex);
    state->chunks.clear();
    state->isEnding = true;
    state->filled.notify_all();
}

void OutputQueue::write(int descriptor, const QByteArray &bytes)
{
    const std::lock_guard<std::mutex> lock(state->mutex);
    if (!state->isStarted) {
        state->isStarted = true;
        // Blocks all signals in the thread: SIGPIPE becomes an error of write(), and the others go
        // to the main thread.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        std::thread([shared = state] { shared->run(); }).detach();
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    if (!state->chunks.empty() && state->chunks.back().descriptor == descriptor
        && state->chunks.back().bytes.size() < maxChunkSize) {
        state->chunks.back().bytes += bytes;
    } else {
        state->chunks.push_back({descriptor, bytes});
    }
    state->filled.notify_one();
}

void OutputQueue::drain(int timeoutMs)
{
    std::unique_lock<std::mutex> lock(state->mutex);
    const auto isEmpty = [this] { return state->chunks.empty() && !state->isWriting; };
    if (timeoutMs < 0) {
        state->emptied.wait(lock, isEmpty);
    } else {
        state->emptied.wait_for(lock, std::chrono::milliseconds(timeoutMs), isEmpty);
    }
}

bool OutputQueue::hasFailed(int descriptor) const
{
    const std::lock_guard<std::mutex> lock(state->mutex);
    return state->failed.count(descriptor) > 0;
}

bool OutputQueue::isReaderGone() const
{
    const std::lock_guard<std::mutex> lock(state->mutex);
    return state->isReaderGone;
}

int OutputQueue::readerGoneDescriptor() const
{
    return state->event;
}
