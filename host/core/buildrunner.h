// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filestate.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class FileHasher;
class ImageGuard;
class PluginSession;
class QTemporaryDir;
class StitcherRun;
struct FileHash;

/// The parameters of a build.
struct BuildOptions {
    QString stitcher;      ///< Absolute path of the stitcher, as locateStitcher() found it.
    int timeoutMs = 0;     ///< How long the stitcher may run, in milliseconds; 0 for forever.
    bool keepWork = false; ///< Whether to keep the work directory.
    /// States of input files and of the stitcher from before they were checked or hashed. The build
    /// fails if one has changed since; a file that is not listed, if it changes during the build.
    FileStates knownStates;
};

/// How a build ended.
struct BuildResult {
    bool isSuccess = false;   ///< Whether the image was built.
    QString reason;           ///< Why it failed, in full sentences; empty on success.
    QString imageFile;        ///< Absolute path of the image.
    qint64 imageSize = 0;     ///< In bytes; 0 unless the build succeeded.
    QByteArray sha256;        ///< Of the image, in hexadecimal; empty unless the build succeeded.
    QString partialFile;      ///< What a failed build wrote, moved to this path; may be empty.
    QString workDirectory;    ///< Empty unless it was kept or could not be removed.
    QString stitcher;         ///< Absolute path of the stitcher.
    int exitStatus = -1;      ///< The stitcher's; -1 when it did not exit by itself.
    int signalNumber = 0;     ///< The signal that ended the stitcher; 0 when none did.
    QByteArray configuration; ///< The text that the stitcher was given.
    FileStates inputStates;   ///< Of the input files; on success they have not changed since.
    FileState stitcherState;  ///< The same of the stitcher.
    qint64 elapsedMs = 0;     ///< From the start to the end of the stitcher.
};

Q_DECLARE_METATYPE(BuildResult)

/// Runs one build.
///
/// A build succeeds when the stitcher exits with status 0 and leaves no process behind, the image is a
/// regular file that is not empty and was written by this build, and neither an input file nor the
/// stitcher has changed meanwhile. An existing image is moved aside and restored when the build fails;
/// what the failed build wrote is kept as IMAGE.partial. Every build has its own work directory.
class BuildRunner : public QObject
{
    Q_OBJECT

public:
    /// Builds with the plug-in of @p pluginSession, which must outlive this object.
    explicit BuildRunner(PluginSession *pluginSession, QObject *parent = nullptr);
    /// Fails a build that is still running: terminates the stitcher and everything it has started,
    /// which may take some seconds, and restores the older image.
    ~BuildRunner() override;

    /// Starts the stitcher. finished() follows, but never before this call returns. A runner runs
    /// one build only.
    void start(const BuildOptions &options);
    /// Terminates the stitcher and everything it has started; the build fails for @p reason. Also
    /// stops the hashing of a finished image; that build fails too.
    void stop(const QString &reason);

signals:
    /// The image is being hashed: @p done of @p total bytes.
    void hashing(qint64 done, qint64 total);
    /// The build has ended. No process of the stitcher is left.
    void finished(const BuildResult &result);

private:
    QString prepare(const BuildOptions &options);
    void execute();
    void noteStates(const FileStates &knownStates);
    void noteError(const QString &message);
    void finishStitcher();
    void finishHashing(const QList<FileHash> &hashes);
    QString stitcherProblem() const;
    QString imageProblem() const;
    QString changeProblem() const;
    QString changedFile() const;
    QString createWorkDirectory(bool kept);
    void removeWorkDirectory();
    void concludeSoon(const QString &reason);
    void conclude(const QString &reason);

    PluginSession *session;
    std::unique_ptr<ImageGuard> image;
    std::unique_ptr<QTemporaryDir> work;
    std::unique_ptr<StitcherRun> run;
    std::unique_ptr<FileHasher> hasher;
    QTimer timeoutTimer;
    QTimer giveUpTimer;
    QElapsedTimer elapsed;
    FileState imageState; ///< When hashing the image starts.
    QString stopReason;
    QString startError;
    bool isStarting = false;
    bool isConcluded = false;
    BuildResult result;
};
