// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/filewatcher.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {

const int reportDelayMs = 150;
/// As many as the kernel follows.
const int maxSymlinks = 40;

/// Adds @p path and every existing directory that decides what it refers to, symlinks followed.
void addPaths(const QString &path, int symlinkCount, QSet<QString> *paths)
{
    for (QString current = path;; current = QFileInfo(current).path()) {
        const QFileInfo info(current);
        if (info.exists() && paths->contains(current)) {
            return;
        }
        if (info.exists()) {
            paths->insert(current);
        }
        if (info.isSymLink() && symlinkCount < maxSymlinks) {
            addPaths(QDir::cleanPath(info.symLinkTarget()), symlinkCount + 1, paths);
        }
        if (info.isRoot()) {
            return;
        }
    }
}

} // namespace

FileWatcher::FileWatcher(QObject *parent)
    : QObject(parent)
{
    reportTimer.setSingleShot(true);
    reportTimer.setInterval(reportDelayMs);
    connect(&reportTimer, &QTimer::timeout, this, &FileWatcher::compare);
}

void FileWatcher::setFiles(const QStringList &files)
{
    QHash<QString, FileState> newStates;
    for (const QString &file : files) {
        const auto known = states.constFind(file);
        newStates.insert(file, known == states.constEnd() ? FileState::of(file) : *known);
    }
    states = newStates;
    compare();
}

void FileWatcher::compareSoon()
{
    if (!reportTimer.isActive()) {
        reportTimer.start();
    }
}

/// Watches everything anew: QFileSystemWatcher watches what a path has referred to when it was
/// added, even when something else has taken its place.
void FileWatcher::watch()
{
    QSet<QString> paths;
    for (auto state = states.constBegin(); state != states.constEnd(); ++state) {
        addPaths(state.key(), 0, &paths);
    }
    watcher = std::make_unique<QFileSystemWatcher>();
    if (!paths.isEmpty()) { // Of none, Qt warns.
        watcher->addPaths(paths.values());
    }
    connect(watcher.get(), &QFileSystemWatcher::fileChanged, this, &FileWatcher::compareSoon);
    connect(watcher.get(), &QFileSystemWatcher::directoryChanged, this, &FileWatcher::compareSoon);
}

void FileWatcher::compare()
{
    // First, so that no change falls between.
    watch();
    bool isChanged = false;
    for (auto state = states.begin(); state != states.end(); ++state) {
        const FileState now = FileState::of(state.key());
        if (now != *state) {
            *state = now;
            isChanged = true;
        }
    }
    if (isChanged) {
        emit changed();
    }
}
