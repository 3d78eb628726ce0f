// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filehasher.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <QTimer>

namespace {

const int chunkSize = 1 << 20;
const int progressIntervalMs = 100;

} // namespace

FileHasher::FileHasher(QObject *parent)
    : QObject(parent)
{
}

FileHasher::~FileHasher()
{
    cancel();
}

void FileHasher::start(const QStringList &files)
{
    hashes.clear();
    for (const QString &file : files) {
        FileHash hash;
        hash.file = file;
        hashes.append(hash);
    }
    thread.reset(QThread::create([this] { hashAll(); }));
    connect(thread.get(), &QThread::finished, this, &FileHasher::finish);
    thread->start();
    if (!thread->isRunning() && !thread->isFinished()) {
        // The system has no more threads.
        QTimer::singleShot(0, this, [this] {
            hashAll();
            finish();
        });
    }
}

void FileHasher::finish()
{
    if (!cancelled) {
        emit finished(hashes);
    }
}

void FileHasher::cancel()
{
    cancelled = true;
    if (thread) {
        thread->wait();
    }
}

void FileHasher::hashAll()
{
    for (const FileHash &each : qAsConst(hashes)) {
        totalSize += QFileInfo(each.file).size();
    }
    for (FileHash &each : hashes) {
        hash(&each);
    }
}

void FileHasher::hash(FileHash *target)
{
    QFile file(target->file);
    if (!QFileInfo(file).isFile()) {
        target->error = QFileInfo::exists(target->file) ? tr("It is not a regular file")
                                                        : tr("It does not exist");
        return;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        target->error = file.errorString();
        return;
    }

    QCryptographicHash sha256(QCryptographicHash::Sha256);
    QByteArray chunk(chunkSize, Qt::Uninitialized);
    QElapsedTimer sinceProgress;
    sinceProgress.start();
    qint64 count = 0;
    while (!cancelled && (count = file.read(chunk.data(), chunkSize)) > 0) {
        sha256.addData(chunk.constData(), int(count));
        target->size += count;
        doneSize += count;
        if (sinceProgress.hasExpired(progressIntervalMs)) {
            emit progress(doneSize, totalSize);
            sinceProgress.start();
        }
    }
    if (count < 0) {
        target->error = file.errorString();
        return;
    }
    target->sha256 = sha256.result().toHex();
}
