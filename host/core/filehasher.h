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

/// What hashing one file brought.
struct FileHash {
    QString file;      ///< The path as it was given.
    qint64 size = 0;   ///< The bytes that were read.
    QByteArray sha256; ///< In hexadecimal; empty on an error.
    QString error;     ///< Why there is no hash; empty when there is one.
};

/// Computes the SHA-256 of files in a thread of its own, so that the event loop goes on.
class FileHasher : public QObject
{
    Q_OBJECT

public:
    /// Creates a hasher that waits for start().
    explicit FileHasher(QObject *parent = nullptr);
    /// Cancels, and waits for the thread.
    ~FileHasher() override;

    /// Hashes @p files; finished() follows, never before this call returns. Call it once. What is
    /// not a regular file is an error, so that no FIFO or device is waited for.
    void start(const QStringList &files);
    /// Stops; finished() will not come.
    void cancel();

signals:
    /// @p done of @p total bytes; several times per second, for all files together.
    void progress(qint64 done, qint64 total);
    /// One entry per file, in the order of start().
    void finished(const QList<FileHash> &hashes);

private:
    void hashAll();
    void hash(FileHash *target);

    std::unique_ptr<QThread> thread;
    std::atomic<bool> cancelled{false};
    QList<FileHash> hashes; ///< Belongs to the thread while it runs.
    qint64 doneSize = 0;
    qint64 totalSize = 0;
};
