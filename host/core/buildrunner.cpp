// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/buildrunner.h"

#include "host/core/ingredients.h"
#include "host/core/pluginsession.h"
#include "host/core/stitcherwatch.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"

#include <QAbstractItemModel>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace {

// The plug-in tells of these two ends in words only.
const char failedToStartText[]
    = "The process failed to start. Either the invoked program is missing, or you may have "
      "insufficient permissions to invoke the program.";
const char crashedText[] = "The process crashed some time after starting successfully.";

/// How long a killed stitcher may take to go.
const int giveUpMs = 5000;

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

QByteArray sha256Of(const QString &fileName)
{
    QFile file(fileName);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        return {};
    }
    return hash.result().toHex();
}

} // namespace

bool BuildRunner::FileState::operator==(const FileState &other) const
{
    return exists == other.exists && inode == other.inode && size == other.size
        && modified == other.modified && changed == other.changed;
}

BuildRunner::BuildRunner(PluginSession *pluginSession, QObject *parent)
    : QObject(parent)
    , session(pluginSession)
    , watch(std::make_unique<StitcherWatch>())
{
    connect(watch.get(), &StitcherWatch::ended, this, &BuildRunner::conclude);
    connect(pluginSession->statusManager(), &StatusManager::errorMessage, this,
            &BuildRunner::noteError);

    timeoutTimer.setSingleShot(true);
    connect(&timeoutTimer, &QTimer::timeout, this, [this] {
        stop(tr("The stitcher did not end within %1 s and was stopped.")
                 .arg(timeoutTimer.interval() / 1000.0));
    });
    giveUpTimer.setSingleShot(true);
    connect(&giveUpTimer, &QTimer::timeout, this, &BuildRunner::conclude);
}

BuildRunner::~BuildRunner()
{
    if (!isConcluded) {
        watch->kill();
    }
}

void BuildRunner::start(int timeoutMs)
{
    QAbstractItemModel *model = session->ingredientManager()->getIngredients();
    makePathsAbsolute(model);
    result.imageFile = textOf(outputIngredient(*model).value);
    imageBefore = stateOf(result.imageFile);
    elapsed.start();

    if (!watch->prepare()) {
        stopReason = tr("The system has no pipe left to watch the stitcher with.");
        QTimer::singleShot(0, this, &BuildRunner::conclude);
        return;
    }
    isStarting = true;
    session->executionManager()->beginExecution();
    isStarting = false;
    watch->begin();
    if (timeoutMs > 0) {
        timeoutTimer.start(timeoutMs);
    }
}

void BuildRunner::stop(const QString &reason)
{
    if (isConcluded || !stopReason.isEmpty()) {
        return;
    }
    stopReason = reason;
    watch->kill();
    giveUpTimer.start(giveUpMs);
}

void BuildRunner::noteError(const QString &message)
{
    if (message == QLatin1String(failedToStartText)) {
        hasFailedToStart = true;
    } else if (message == QLatin1String(crashedText)) {
        hasCrashed = true;
    } else if (isStarting) {
        startError = message;
    }
}

void BuildRunner::conclude()
{
    if (isConcluded) {
        return;
    }
    isConcluded = true;
    timeoutTimer.stop();
    giveUpTimer.stop();
    result.elapsedMs = elapsed.elapsed();

    const FileState imageAfter = stateOf(result.imageFile);
    result.reason = failureReason(imageAfter);
    if (result.reason.isEmpty()) {
        result.sha256 = sha256Of(result.imageFile);
        if (result.sha256.isEmpty()) {
            result.reason = tr("The image %1 cannot be read.").arg(result.imageFile);
        }
    }
    result.isSuccess = result.reason.isEmpty();
    result.imageSize = result.isSuccess ? imageAfter.size : 0;
    emit finished(result);
}

/// Why the build counts as failed; empty when it does not.
QString BuildRunner::failureReason(const FileState &imageAfter) const
{
    if (!stopReason.isEmpty()) {
        return stopReason;
    }
    if (!startError.isEmpty() && !watch->hasChild()) {
        return tr("The stitcher was not started: %1").arg(startError);
    }
    if (hasFailedToStart) {
        return tr("The stitcher could not be started: is tamblin-stitcher in the search path?");
    }
    if (hasCrashed) {
        return tr("The stitcher crashed.");
    }
    if (result.imageFile.isEmpty()) {
        return tr("No output file is named.");
    }
    if (!imageAfter.exists) {
        return tr("The stitcher ended without writing %1.").arg(result.imageFile);
    }
    if (imageAfter == imageBefore) {
        return tr("The stitcher ended and left %1 as it was before.").arg(result.imageFile);
    }
    if (imageAfter.size == 0) {
        return tr("The stitcher wrote nothing into %1.").arg(result.imageFile);
    }
    return {};
}

BuildRunner::FileState BuildRunner::stateOf(const QString &file)
{
    FileState state;
    struct stat raw = {};
    if (stat(QFile::encodeName(file).constData(), &raw) == 0 && S_ISREG(raw.st_mode)) {
        state.exists = true;
        state.inode = raw.st_ino;
        state.size = raw.st_size;
        state.modified = nanoseconds(raw.st_mtim);
        state.changed = nanoseconds(raw.st_ctim);
    }
    return state;
}
