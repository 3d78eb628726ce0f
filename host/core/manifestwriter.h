// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/lastbuild.h"

#include <QObject>

#include <memory>

class FileHasher;
struct FileHash;

/// Hashes the inputs of a successful build in the background, then writes its manifest.
class ManifestWriter : public QObject
{
    Q_OBJECT

public:
    /// Does nothing before start().
    explicit ManifestWriter(QObject *parent = nullptr);
    /// Cancels; no manifest is written.
    ~ManifestWriter() override;

    /// Hashes the inputs and writes the manifest; finished() follows. Call it once.
    /// @param lastBuild a successful build; its inputs must not have changed since
    /// @param pluginVersion as the plug-in reports it
    /// @param file path of the manifest
    void start(const LastBuild &lastBuild, const QString &pluginVersion, const QString &file);

signals:
    /// @p problem is empty on success.
    void finished(const QString &problem);

private:
    void write(const QList<FileHash> &hashes);

    std::unique_ptr<FileHasher> hasher;
    LastBuild build;
    Project manifest;
    QString manifestFile;
};

/// What a manifest records of @p result, with the versions and the time; the caller adds the
/// stitcher's hash.
BuildRecord buildRecordOf(const BuildResult &result, const QString &pluginVersion);
