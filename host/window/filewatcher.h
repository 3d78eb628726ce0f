// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filestate.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

/// Reports files that change, appear, disappear or are replaced on disk, also because a directory
/// or symlink on the way to them is renamed or replaced.
class FileWatcher : public QObject
{
    Q_OBJECT

public:
    /// Watches nothing before setFiles().
    explicit FileWatcher(QObject *parent = nullptr);

    /// Watches @p files, absolute paths, from their present state on. A file that was watched
    /// before keeps the state that was last reported.
    void setFiles(const QStringList &files);

signals:
    /// A file differs from its last reported state. Emitted a fraction of a second after the
    /// change, so that a file that is being written is not reported for every block.
    void changed();

private:
    void compareSoon();
    void compare();
    void watch();

    std::unique_ptr<QFileSystemWatcher> watcher;
    QHash<QString, FileState> states; ///< By path.
    QTimer reportTimer;
};
