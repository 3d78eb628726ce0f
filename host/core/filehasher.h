// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filestate.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTimer>

/// What is known of one file.
struct FileRecord {
    QString file;         ///< Absolute path.
    FileState state = {}; ///< When it was noted.
    /// SHA-256 of the content at that time, in hexadecimal; empty when it was not computed.
    QByteArray sha256 = {};
    QString error = {}; ///< Why there is no hash, without a full stop; empty when there is one.
};

/// Records by path.
using FileRecords = QHash<QString, FileRecord>;

/// The present state of @p file, without a hash.
FileRecord recordOf(const QString &file);
/// Whether the file is still in the recorded state, and was while it was hashed.
bool isUnchanged(const FileRecord &record);

/// Computes the SHA-256 of files in slices, between which the event loop runs.
class FileHasher : public QObject
{
    Q_OBJECT

public:
    /// Creates a hasher that waits for add().
    explicit FileHasher(QObject *parent = nullptr);
    /// Computes the hashes that are missing in @p records, after those of earlier calls; finished()
    /// follows, but never before this call returns. A file that is not in the recorded state any
    /// more, or that changes while it is read, is an error. So is anything but a regular file: no
    /// FIFO or device blocks the program.
    void add(const QList<FileRecord> &records);
    /// Stops; finished() is not emitted.
    void cancel();

signals:
    /// @p done of @p total bytes of all files; emitted several times per second.
    void progress(qint64 done, qint64 total);
    /// Nothing is left to do.
    /// @param records all that were added, in their order, each with a hash or an error
    void finished(const QList<FileRecord> &records);

private:
    void hashSlice();
    bool openNext();
    void endFile(const QString &error);

    QList<FileRecord> files;
    int position = 0; ///< Of the file that is read, or of the next one.
    QFile source;
    QCryptographicHash hash{QCryptographicHash::Sha256};
    QByteArray slice;
    QElapsedTimer sinceProgress;
    qint64 doneSize = 0;
    qint64 totalSize = 0;
    QTimer slices; ///< Expires whenever no other event waits, until nothing is left.
};
