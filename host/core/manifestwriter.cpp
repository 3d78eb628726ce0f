// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/manifestwriter.h"

#include "host/core/filehasher.h"
#include "host/core/manifest.h"

#include <QDateTime>

BuildRecord buildRecordOf(const BuildResult &result, const QString &pluginVersion)
{
    BuildRecord record;
    record.imageFile = result.imageFile;
    record.imageSize = result.imageSize;
    record.imageSha256 = result.sha256;
    record.configuration = QString::fromLocal8Bit(result.configuration);
    record.stitcherFile = result.stitcher;
    record.stitcherExitStatus = result.exitStatus;
    record.hostVersion = QStringLiteral(LOOMWRIGHT_VERSION);
    record.pluginVersion = pluginVersion;
    record.qtVersion = QLatin1String(qVersion());
    record.time = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    return record;
}

ManifestWriter::ManifestWriter(QObject *parent)
    : QObject(parent)
    , hasher(std::make_unique<FileHasher>())
{
    connect(hasher.get(), &FileHasher::finished, this, &ManifestWriter::write);
}

ManifestWriter::~ManifestWriter() = default;

void ManifestWriter::start(const LastBuild &lastBuild, const QString &pluginVersion,
                           const QString &file)
{
    build = lastBuild;
    manifestFile = file;
    manifest = build.values();
    manifest.build = buildRecordOf(build.result(), pluginVersion);
    hasher->start(QStringList(build.result().inputStates.keys()) << build.result().stitcher);
}

void ManifestWriter::write(const QList<FileHash> &hashes)
{
    const FileHash &stitcher = hashes.last();
    FileStates states = build.result().inputStates;
    states.insert(stitcher.file, build.result().stitcherState);
    const QString changed = changedFile(states);
    if (!changed.isEmpty()) {
        emit finished(tr("No manifest is written: %1 changed meanwhile.").arg(changed));
        return;
    }
    const FileState existing = FileState::of(manifestFile);
    for (auto state = states.constBegin(); state != states.constEnd(); ++state) {
        if (state->isSameFileAs(existing)) {
            emit finished(tr("No manifest is written: %1 is an input.").arg(manifestFile));
            return;
        }
    }
    for (const FileHash &hash : hashes) {
        if (!hash.error.isEmpty()) {
            emit finished(tr("No manifest is written: %1: %2.").arg(hash.file, hash.error));
            return;
        }
    }
    setInputHashes(&manifest, hashes);
    manifest.build->stitcherSha256 = stitcher.sha256;
    emit finished(writeProject(manifestFile, manifest));
}
