// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class PluginSession;
class StitcherWatch;

/// How a build ended.
struct BuildResult {
    bool isSuccess = false;
    QString reason;       ///< Why it failed, in a sentence; empty on success.
    QString imageFile;    ///< Absolute path of the image.
    qint64 imageSize = 0; ///< In bytes; 0 unless the build succeeded.
    QByteArray sha256;    ///< Of the image, in hexadecimal; empty unless the build succeeded.
    qint64 elapsedMs = 0; ///< From the start to the end of the stitcher.
};

Q_DECLARE_METATYPE(BuildResult)

/// Runs one build to its end.
///
/// A build succeeds when the stitcher has been started, has ended without crashing and has written
/// the image meanwhile. The stitcher's exit status does not reach a host.
class BuildRunner : public QObject
{
    Q_OBJECT

public:
    /// Builds with the plug-in of @p pluginSession, which must outlive this object.
    explicit BuildRunner(PluginSession *pluginSession, QObject *parent = nullptr);
    /// Kills a stitcher that still runs.
    ~BuildRunner() override;

    /// Starts the stitcher; finished() follows, never before this call returns. One runner runs one
    /// build.
    /// @param timeoutMs how long the stitcher may run, in milliseconds; 0 for ever
    void start(int timeoutMs);
    /// Kills the stitcher with all that it has started; the build fails for @p reason.
    void stop(const QString &reason);

signals:
    void finished(const BuildResult &result);

private:
    /// What tells whether a file has been written: changes with every write.
    struct FileState {
        bool exists = false;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 modified = 0; ///< In nanoseconds.
        qint64 changed = 0;  ///< In nanoseconds.

        bool operator==(const FileState &other) const;
    };

    static FileState stateOf(const QString &file);
    void noteError(const QString &message);
    void conclude();
    QString failureReason(const FileState &imageAfter) const;

    PluginSession *session;
    std::unique_ptr<StitcherWatch> watch;
    QTimer timeoutTimer;
    QTimer giveUpTimer;
    QElapsedTimer elapsed;
    FileState imageBefore;
    QString stopReason;
    QString startError;
    bool isStarting = false;
    bool hasCrashed = false;
    bool hasFailedToStart = false;
    bool isConcluded = false;
    BuildResult result;
};
