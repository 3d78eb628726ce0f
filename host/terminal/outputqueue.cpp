// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/outputqueue.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <set>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

/// Short texts for the same descriptor are written together, up to this many bytes.
const int maxChunkSize = 1 << 16;

/// Text that exceeds this many bytes goes into a file.
const int maxMemorySize = 16 << 20;

/// Text for a descriptor, in memory or in the spill file.
struct Chunk {
    int descriptor = -1;
    bool isSpilled = false;
    qint64 offset = 0; ///< In the spill file.
    int size = 0;
    QByteArray bytes = {};
};

/// Creates a file in the temporary directory that has no name there and disappears with the program.
int createUnnamedFile()
{
    QByteArray name = QFile::encodeName(QDir::temp().filePath(QStringLiteral("loomwright-XXXXXX")));
    const int descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) {
        unlink(name.constData());
    }
    return descriptor;
}

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
    qint64 memorySize = 0; ///< Of the chunks in memory.
    int spillFile = -1;
    qint64 spillEnd = 0;
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
        if (spillFile >= 0) {
            close(spillFile);
        }
    }

    void run();
    void add(int descriptor, const QByteArray &bytes);
    bool spill(const QByteArray &bytes);
    int writeChunk(const Chunk &chunk) const;
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
        memorySize -= chunk.bytes.size();
        isWriting = true;
        const bool skipped = failed.count(chunk.descriptor) > 0;
        lock.unlock();
        const int error = skipped ? 0 : writeChunk(chunk);
        lock.lock();
        isWriting = false;
        if (error != 0) {
            noteFailure(chunk.descriptor, error);
        }
        if (chunks.empty()) {
            if (spillEnd > 0 && ftruncate(spillFile, 0) == 0) {
                spillEnd = 0;
            }
            emptied.notify_all();
        }
    }
}

void OutputQueue::State::add(int descriptor, const QByteArray &bytes)
{
    const qint64 offset = spillEnd;
    const bool spilled = memorySize + bytes.size() > maxMemorySize && spill(bytes);
    // A spilled chunk at the end of the queue is also at the end of the file.
    const bool fits = !chunks.empty() && chunks.back().descriptor == descriptor
        && chunks.back().isSpilled == spilled && chunks.back().size < maxChunkSize;
    if (!fits) {
        chunks.push_back({descriptor, spilled, offset});
    }
    chunks.back().size += bytes.size();
    if (!spilled) {
        chunks.back().bytes += bytes;
        memorySize += bytes.size();
    }
}

/// Appends @p bytes to the spill file. False if that fails; what was written in part is overwritten by
/// the next call.
bool OutputQueue::State::spill(const QByteArray &bytes)
{
    if (spillFile < 0) {
        spillFile = createUnnamedFile();
    }
    if (pwrite(spillFile, bytes.constData(), size_t(bytes.size()), spillEnd) != bytes.size()) {
        return false;
    }
    spillEnd += bytes.size();
    return true;
}

/// Writes all of @p chunk; returns 0 or an error number.
int OutputQueue::State::writeChunk(const Chunk &chunk) const
{
    if (!chunk.isSpilled) {
        return writeAll(chunk.descriptor, chunk.bytes);
    }
    QByteArray bytes(chunk.size, Qt::Uninitialized);
    return pread(spillFile, bytes.data(), size_t(chunk.size), chunk.offset) == chunk.size
        ? writeAll(chunk.descriptor, bytes)
        : EIO;
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
        // Blocks all signals in the thread: SIGPIPE becomes an error of write(), and the others go
        // to the main thread.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        state->isStarted = startThread(state);
        if (!state->isStarted) {
            const int error = writeAll(descriptor, bytes);
            if (error != 0) {
                state->noteFailure(descriptor, error);
            }
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    if (state->isStarted) {
        state->add(descriptor, bytes);
        state->filled.notify_one();
    }
}

/// False when the system has no more threads.
bool OutputQueue::startThread(const std::shared_ptr<State> &state)
{
    try {
        std::thread([state] { state->run(); }).detach();
    } catch (const std::system_error &) {
        return false;
    }
    return true;
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
