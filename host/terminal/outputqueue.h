// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <memory>

/// Writes to file descriptors in a separate thread, in the order of the calls. A slow reader or a
/// non-blocking descriptor neither blocks the caller nor loses text. If the system has no more
/// threads, the caller is blocked.
///
/// Pending text is kept in memory up to a limit, and beyond it in a temporary file; in memory again
/// if the file cannot be written.
class OutputQueue
{
public:
    OutputQueue();
    /// Discards what drain() has not waited for.
    ~OutputQueue();
    OutputQueue(const OutputQueue &) = delete;
    OutputQueue &operator=(const OutputQueue &) = delete;

    void write(int descriptor, const QByteArray &bytes);
    /// Waits until everything is written or has failed.
    /// @param timeoutMs in milliseconds; negative for forever
    void drain(int timeoutMs);

    /// Whether writing to @p descriptor failed.
    bool hasFailed(int descriptor) const;
    /// Whether a reader has closed its end.
    bool isReaderGone() const;
    /// A descriptor that becomes readable when a reader closes its end; owned by this object.
    int readerGoneDescriptor() const;

private:
    struct State;

    static bool startThread(const std::shared_ptr<State> &state);

    std::shared_ptr<State> state; ///< Shared with the thread, which may outlive this object.
};
