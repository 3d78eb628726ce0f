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

/// QFileSystemWatcher watches what a path has referred to when it was added, even when something else
/// has taken its place.
void FileWatcher::watchPaths()
{
    QSet<QString> wanted;
    for (auto state = states.constBegin(); state != states.constEnd(); ++state) {
        addPaths(state.key(), 0, &wanted);
    }
    FileStates newPaths;
    for (const QString &path : qAsConst(wanted)) {
        newPaths.insert(path, FileState::of(path));
    }
    for (auto old = watchedPaths.constBegin(); old != watchedPaths.constEnd(); ++old) {
        if (!newPaths.value(old.key()).isSameFileAs(*old)) {
            watcher.removePath(old.key());
        }
    }
    const QStringList present = watcher.files() + watcher.directories();
    for (const QString &path : qAsConst(wanted)) {
        if (!present.contains(path)) {
            watcher.addPath(path);
        }
    }
    watchedPaths = newPaths;
}

void FileWatcher::compare()
{
    bool isChanged = false;
    for (auto state = states.begin(); state != states.end(); ++state) {
        const FileState now = FileState::of(state.key());
        if (now != *state) {
            *state = now;
            isChanged = true;
        }
    }
    watchPaths();
    if (isChanged) {
        emit changed();
    }
}
