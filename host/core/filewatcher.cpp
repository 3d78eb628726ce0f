// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filewatcher.h"

#include <QFileInfo>
#include <QSet>

namespace {

const int reportDelayMs = 150;

} // namespace

FileWatcher::FileWatcher(QObject *parent)
    : QObject(parent)
{
    reportTimer.setSingleShot(true);
    reportTimer.setInterval(reportDelayMs);
    connect(&reportTimer, &QTimer::timeout, this, &FileWatcher::report);
    const auto wait = [this] {
        if (!reportTimer.isActive()) {
            reportTimer.start();
        }
    };
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, wait);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, wait);
}

void FileWatcher::setFiles(const QStringList &files)
{
    FileStates newStates;
    for (const QString &file : files) {
        const auto known = states.constFind(file);
        newStates.insert(file, known == states.constEnd() ? FileState::of(file) : *known);
    }
    states = newStates;
    watchPaths();
}

/// Watches the directories too, for files that do not exist yet or no longer exist.
/// QFileSystemWatcher forgets a file that is removed, even when another one replaces it.
void FileWatcher::watchPaths()
{
    QSet<QString> wanted;
    for (auto state = states.constBegin(); state != states.constEnd(); ++state) {
        const QFileInfo file(state.key());
        for (const QString &path : {file.absoluteFilePath(), file.absolutePath()}) {
            if (QFileInfo::exists(path)) {
                wanted.insert(path);
            }
        }
    }
    const QStringList watchedPaths = watcher.files() + watcher.directories();
    const QSet<QString> watched(watchedPaths.begin(), watchedPaths.end());
    const QStringList dropped = (watched - wanted).values();
    const QStringList added = (wanted - watched).values();
    if (!dropped.isEmpty()) {
        watcher.removePaths(dropped);
    }
    if (!added.isEmpty()) {
        watcher.addPaths(added);
    }
}

void FileWatcher::report()
{
    QStringList changedFiles;
    for (auto state = states.begin(); state != states.end(); ++state) {
        const FileState now = FileState::of(state.key());
        if (now != *state) {
            *state = now;
            changedFiles.append(state.key());
        }
    }
    watchPaths();
    if (!changedFiles.isEmpty()) {
        emit changed(changedFiles);
    }
}
