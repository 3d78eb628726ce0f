// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <memory>

class QThread;

/// The result of hashing one file.
struct FileHash {
    QString file;      ///< The path as it was given.
    qint64 size = 0;   ///< Number of bytes read.
    QByteArray sha256; ///< In hexadecimal; empty on an error.
    QString error;     ///< Why there is no hash, without a full stop; empty when there is one.
};

/// Computes the SHA-256 of files in a thread, so that the event loop keeps running. It blocks the event
/// loop if the system has no more threads.
class FileHasher : public QObject
{
    Q_OBJECT

public:
    /// Creates a hasher that waits for start().
    explicit FileHasher(QObject *parent = nullptr);
    /// Cancels, and waits for the thread.
    ~FileHasher() override;

    /// Hashes @p files. finished() follows, but never before this call returns. Call it once.
    /// Anything but a regular file is an error, so that no FIFO or device blocks the thread.
    void start(const QStringList &files);
    /// Stops; finished() is not emitted.
    void cancel();

signals:
    /// @p done of @p total bytes of all files; emitted several times per second.
    void progress(qint64 done, qint64 total);
    /// One entry per file, in the order of start().
    void finished(const QList<FileHash> &hashes);

private:
    void hashAll();
    void finish();
    void hash(FileHash *target);

    std::unique_ptr<QThread> thread;
    std::atomic<bool> cancelled{false};
    QList<FileHash> hashes; ///< Used by the thread alone while it runs.
    qint64 doneSize = 0;
    qint64 totalSize = 0;
};
