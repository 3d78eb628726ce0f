// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filehasher.h"
#include "host/core/project.h"
#include "host/core/stagedfile.h"

#include <QElapsedTimer>
#include <QMetaType>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class Plugin;
class StitcherRun;
class Values;

/// The parameters of a build.
struct BuildOptions {
    QString stitcher;      ///< Absolute path of the stitcher, as locateStitcher() found it.
    int timeoutMs = 0;     ///< How long the stitcher may run, in milliseconds; 0 for forever.
    bool keepWork = false; ///< Whether to keep what a failed build wrote, and the work directory.
    bool isDryRun = false; ///< Whether to stop before the stitcher is started.
    /// What is known of input files and of the stitcher from before they were checked. The build
    /// fails if one has changed since. Hashes are not computed again.
    FileRecords known;
    /// Asked just before the image is published; if it returns true, the build fails.
    std::function<bool()> isInterrupted;
};

/// How a build ended.
struct BuildResult {
    bool isSuccess = false;   ///< Whether the image was built.
    bool isStopped = false;   ///< Whether it failed because of Build::stop().
    QString reason;           ///< Why it failed, in full sentences; empty on success.
    FileRecord image;         ///< The image; without a state and hash if the build failed.
    QList<FileRecord> inputs; ///< The input files that it was built from.
    FileRecord stitcher;      ///< The stitcher.
    QStringList otherFiles;   ///< Absolute paths of other files that the stitcher wrote.
    QString keptDirectory;    ///< Where what a failed build wrote was kept; may be empty.
    QString workDirectory;    ///< Empty unless it was kept.
    int exitStatus = -1;      ///< The stitcher's; -1 when it did not exit by itself.
    int signalNumber = 0;     ///< The signal that killed the stitcher; 0 when none did.
    QByteArray configuration; ///< The text that the stitcher was given, with the image's path.
    QStringList commandLine;  ///< The stitcher and its arguments.
    qint64 elapsedMs = 0;     ///< From start() to the end.
    Project manifest;         ///< Values and build record; only after a success.
};

Q_DECLARE_METATYPE(BuildResult)

/// One build, from the values to the image.
///
/// The stitcher writes into a private directory beside the image, on another path than the user's.
/// The build succeeds when the stitcher exits with status 0 and leaves no process behind, the image
/// is a regular file that is not empty, and neither an input file nor the stitcher has changed.
/// Only then is the image renamed to its path, after other files that the stitcher wrote beside it.
/// Until that moment an older image is not touched.
class Build : public QObject
{
    Q_OBJECT

public:
    /// Builds from @p imageValues with @p loadedPlugin; both must outlive this object.
    Build(Plugin *loadedPlugin, Values *imageValues, const BuildOptions &buildOptions,
          QObject *parent = nullptr);
    /// Fails a build that is still running: terminates the stitcher and everything it has started,
    /// which may take some seconds.
    ~Build() override;

    /// Starts the build. finished() follows, but never before this call returns. Call it once.
    void start();
    /// Terminates the stitcher and everything it has started; the build fails for @p reason. Call
    /// it after start().
    void stop(const QString &reason);

signals:
    /// Files are being hashed: @p done of @p total bytes.
    void hashing(qint64 done, qint64 total);
    /// The build has ended. No process of the stitcher is left.
    void finished(const BuildResult &result);

private:
    enum class Phase {
        Stitching, ///< The stitcher, or what starts it, has not ended.
        Stopping,  ///< The same, but the build has failed; the result has the reason.
        Hashing,   ///< The stitcher has succeeded, and what is not hashed yet is hashed.
        Concluded  ///< The result is settled.
    };

    QString prepare();
    QString createDirectories();
    QString recordFiles();
    QString startStitcher();
    void permitStitcher();
    void judgeStitcher();
    void publish(const QList<FileRecord> &hashed);
    void completeManifest();
    QString stitcherProblem() const;
    QString imageProblem() const;
    QString changeProblem() const;
    QString otherFilesProblem() const;
    QString publishFiles();
    void fail(const QString &reason);
    void conclude(const QString &reason = {});
    void endRun();
    void giveUp();
    void finish();

    Plugin *plugin;
    Values *values;
    BuildOptions options;
    QString target; ///< The path of the image, in a directory without symlinks.
    std::unique_ptr<StagedFile> stage;
    PrivateDirectory work;
    std::unique_ptr<StitcherRun> run;
    FileHasher hasher;
    QTimer giveUpTimer;
    QElapsedTimer elapsed;
    QString startError;
    Phase phase = Phase::Stitching;
    BuildResult result;
};

/// Writes the manifest of the successful build @p result, if the image is still the one that was
/// built.
/// @param file as resolvedTarget() returned it before the build
/// @return an empty text, or why there is no manifest
QString writeManifest(const BuildResult &result, const QString &file);
