// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filehasher.h"

#include <fcntl.h>

namespace {

const char changedText[] = "It has changed";
const int sliceSize = 1 << 20;
const int progressIntervalMs = 100;

/// Opens @p file without waiting for the other end of a FIFO; -1 on failure.
int openForReading(const QString &file)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
    return open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

} // namespace

bool isUnchanged(const FileRecord &record)
{
    return record.error != QLatin1String(changedText) && FileState::of(record.file) == record.state;
}

FileRecord recordOf(const QString &file)
{
    return {file, FileState::of(file)};
}

FileHasher::FileHasher(QObject *parent)
    : QObject(parent)
    , slice(sliceSize, Qt::Uninitialized)
{
    connect(&slices, &QTimer::timeout, this, &FileHasher::hashSlice);
}

void FileHasher::add(const QList<FileRecord> &records)
{
    files += records;
    for (const FileRecord &record : records) {
        totalSize += record.sha256.isEmpty() ? record.state.size : 0;
    }
    sinceProgress.start();
    slices.start(0);
}

void FileHasher::cancel()
{
    slices.stop();
}

void FileHasher::hashSlice()
{
    if (!source.isOpen() && !openNext()) {
        slices.stop();
        emit finished(files);
        return;
    }
    if (source.isOpen()) {
        const qint64 count = source.read(slice.data(), sliceSize);
        if (count > 0) {
            hash.addData(slice.constData(), int(count));
            doneSize += count;
        } else {
            endFile(count < 0 ? source.errorString() : QString());
        }
    }
    if (sinceProgress.hasExpired(progressIntervalMs)) {
        sinceProgress.start();
        emit progress(doneSize, totalSize);
    }
}

/// Opens the next file that needs a hash, or notes why it cannot be opened. False after the last.
bool FileHasher::openNext()
{
    while (position < files.count() && !files.at(position).sha256.isEmpty()) {
        ++position;
    }
    if (position == files.count()) {
        return false;
    }
    const FileRecord &record = files.at(position);
    const int descriptor = openForReading(record.file);
    if (descriptor < 0) {
        endFile(errno == ENOENT ? QStringLiteral("It does not exist") : qt_error_string(errno));
        return true;
    }
    source.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                QFileDevice::AutoCloseHandle);
    hash.reset();
    if (!FileState::ofDescriptor(descriptor).isRegular()) {
        endFile(QStringLiteral("It is not a regular file"));
    }
    return true;
}

void FileHasher::endFile(const QString &error)
{
    FileRecord &record = files[position];
    record.error = error;
    if (error.isEmpty() && FileState::ofDescriptor(source.handle()) != record.state) {
        record.error = QLatin1String(changedText);
    }
    if (record.error.isEmpty()) {
        record.sha256 = hash.result().toHex();
    }
    source.close();
    ++position;
}
