// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <memory>

/// Writes to file descriptors in a thread of its own, in the order of the calls: a reader that is
/// slow, or a descriptor that is non-blocking, neither stops the caller nor loses text.
///
/// What waits is kept in memory.
class OutputQueue
{
public:
    OutputQueue();
    /// Gives up what drain() has not waited for.
    ~OutputQueue();
    OutputQueue(const OutputQueue &) = delete;
    OutputQueue &operator=(const OutputQueue &) = delete;

    void write(int descriptor, const QByteArray &bytes);
    /// Waits until all is written, or cannot be.
    /// @param timeoutMs in milliseconds; negative for forever
    void drain(int timeoutMs);

    /// Whether something could not be written to @p descriptor.
    bool hasFailed(int descriptor) const;
    /// Whether a reader has closed its end.
    bool isReaderGone() const;
    /// A descriptor that becomes readable when a reader closes its end; owned by this object.
    int readerGoneDescriptor() const;

private:
    struct State;

    std::shared_ptr<State> state; ///< Shared with the thread, which may outlive this object.
};
