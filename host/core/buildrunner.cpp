// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/buildrunner.h"

#include "host/core/filehasher.h"
#include "host/core/files.h"
#include "host/core/imageguard.h"
#include "host/core/ingredients.h"
#include "host/core/pluginsession.h"
#include "host/core/stitcherrun.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>

namespace {

/// How long to wait for the stitcher to end after stop(). The runner waits two seconds before it
/// kills a stitcher that ignores SIGTERM.
const int giveUpMs = 10000;

/// The file that the plug-in writes into the work directory.
const char configurationFile[] = "config.txt";

/// Joins two texts, each of which may be empty.
QString joined(const QString &first, const QString &second)
{
    return first.isEmpty() || second.isEmpty() ? first + second : first + QLatin1Char(' ') + second;
}

} // namespace

BuildRunner::BuildRunner(PluginSession *pluginSession, QObject *parent)
    : QObject(parent)
    , session(pluginSession)
{
    connect(pluginSession->statusManager(), &StatusManager::errorMessage, this,
            &BuildRunner::noteError);

    timeoutTimer.setSingleShot(true);
    connect(&timeoutTimer, &QTimer::timeout, this, [this] {
        stop(tr("The stitcher did not end within %1 s and was stopped.")
                 .arg(timeoutTimer.interval() / 1000.0));
    });
    giveUpTimer.setSingleShot(true);
    connect(&giveUpTimer, &QTimer::timeout, this, [this] { conclude(stopReason); });
}

BuildRunner::~BuildRunner()
{
    hasher.reset();
    run.reset(); // Before the older image is restored and the work directory removed.
    removeWorkDirectory();
}

/// Returns why there is none.
QString BuildRunner::createWorkDirectory(bool kept)
{
    QString problem = temporaryDirectoryProblem();
    if (!problem.isEmpty()) {
        return problem;
    }
    const QDir parent(absolutePath(QDir::tempPath()));
    work = std::make_unique<QTemporaryDir>(parent.filePath(QStringLiteral("loomwright-XXXXXX")));
    work->setAutoRemove(!kept);
    return work->isValid() ? QString()
                           : tr("The work directory cannot be created in %1: %2.")
                                 .arg(parent.path(), work->errorString());
}

void BuildRunner::removeWorkDirectory()
{
    if (!work) {
        return;
    }
    if (QFileInfo(work->path()).isSymLink() || QFileInfo(work->path()).isFile()) {
        // The stitcher has replaced it; the target of a symlink must not be emptied.
        work->setAutoRemove(false);
        QFile::remove(work->path());
    } else if (!work->autoRemove() || !work->remove()) {
        result.workDirectory = work->path();
    }
    work.reset();
}

void BuildRunner::start(const BuildOptions &options)
{
    elapsed.start();
    const QString problem = prepare(options);
    if (!problem.isEmpty()) {
        concludeSoon(problem);
        return;
    }
    execute();
    if (options.timeoutMs > 0) {
        timeoutTimer.start(options.timeoutMs);
    }
}

/// Moves an older image aside and creates the work directory. Returns why the build cannot start.
QString BuildRunner::prepare(const BuildOptions &options)
{
    QAbstractItemModel *model = session->ingredientManager()->getIngredients();
    makePathsAbsolute(model);
    result.stitcher = options.stitcher;
    result.imageFile = textOf(outputIngredient(*model).value);
    if (result.imageFile.isEmpty()) {
        return tr("No output file is named.");
    }
    if (FileState::of(result.imageFile).isSameFileAs(FileState::of(result.stitcher))
        || ImageGuard::isReserved(result.imageFile, result.stitcher)) {
        return tr(
            "The stitcher has the name of the image or of a file that the build itself uses.");
    }
    noteStates(options.knownStates);
    const QString changed = changedFile();
    if (!changed.isEmpty()) {
        return tr("%1 has changed since it was checked.").arg(changed);
    }
    auto guard = std::make_unique<ImageGuard>(result.imageFile);
    QString problem = guard->protect();
    if (!problem.isEmpty()) {
        return problem;
    }
    image = std::move(guard);
    return createWorkDirectory(options.keepWork);
}

void BuildRunner::noteStates(const FileStates &knownStates)
{
    const auto stateOf = [&knownStates](const QString &file) {
        return knownStates.contains(file) ? knownStates.value(file) : FileState::of(file);
    };
    const QAbstractItemModel &model = *session->ingredientManager()->getIngredients();
    for (const QString &file : inputFilesOf(ingredientsOf(model))) {
        result.inputStates.insert(file, stateOf(file));
    }
    result.stitcherState = stateOf(result.stitcher);
}

void BuildRunner::execute()
{
    run = std::make_unique<StitcherRun>();
    connect(run.get(), &StitcherRun::stitcherEnded, run.get(), &StitcherRun::finish);
    connect(run.get(), &StitcherRun::ended, this, &BuildRunner::finishStitcher);
    isStarting = true;
    const QString problem = run->start({result.stitcher, {}, work->path(), 0, !work->autoRemove()},
                                       [this] { session->executionManager()->beginExecution(); });
    isStarting = false;
    run->permit();
    result.configuration = contentOf(work->filePath(QLatin1String(configurationFile)));
    if (!problem.isEmpty()) {
        concludeSoon(problem);
    }
}

void BuildRunner::stop(const QString &reason)
{
    if (isConcluded || !stopReason.isEmpty()) {
        return;
    }
    stopReason = reason;
    if (hasher) {
        hasher->cancel();
        concludeSoon(stopReason);
        return;
    }
    if (run) {
        run->stop();
    }
    giveUpTimer.start(giveUpMs);
}

void BuildRunner::noteError(const QString &message)
{
    if (isStarting) {
        startError = joined(startError, message);
    }
}

void BuildRunner::finishStitcher()
{
    timeoutTimer.stop();
    giveUpTimer.stop();
    result.elapsedMs = elapsed.elapsed();
    result.exitStatus = run->exitStatus();
    result.signalNumber = run->signalNumber();

    QString problem = stopReason;
    for (const auto &check :
         {&BuildRunner::stitcherProblem, &BuildRunner::imageProblem, &BuildRunner::changeProblem}) {
        if (problem.isEmpty()) {
            problem = (this->*check)();
        }
    }
    if (!problem.isEmpty()) {
        conclude(problem);
        return;
    }
    imageState = FileState::ofLink(result.imageFile);
    hasher = std::make_unique<FileHasher>();
    connect(hasher.get(), &FileHasher::progress, this, &BuildRunner::hashing);
    connect(hasher.get(), &FileHasher::finished, this, &BuildRunner::finishHashing);
    hasher->start({result.imageFile});
}

/// Why the way the stitcher ended is a failure; empty when it succeeded.
QString BuildRunner::stitcherProblem() const
{
    if (!run->hasStarted()) {
        return joined(tr("The stitcher was not started."), startError);
    }
    if (run->startError() == ENOENT && QFile::exists(result.stitcher)) {
        return tr("The stitcher %1 could not be started: its interpreter is missing.")
            .arg(result.stitcher);
    }
    if (run->startError() != 0) {
        return tr("The stitcher %1 could not be started: %2.")
            .arg(result.stitcher, qt_error_string(run->startError()));
    }
    if (!run->hasFinished()) {
        return tr(
            "The program that supervises the stitcher was killed. Processes of the stitcher may "
            "still be running.");
    }
    if (result.signalNumber != 0) {
        return tr("The stitcher was ended by signal %1 (%2).")
            .arg(result.signalNumber)
            .arg(QString::fromLocal8Bit(strsignal(result.signalNumber)));
    }
    if (result.exitStatus > 0) {
        return tr("The stitcher failed with exit status %1.").arg(result.exitStatus);
    }
    if (run->wasStopped()) {
        return tr("The program that supervises the stitcher was asked to end by a signal.");
    }
    if (run->hasLeftProcesses()) {
        return tr("The stitcher ended, but left processes running. They were terminated, so the "
                  "image may be incomplete.");
    }
    return {};
}

/// Why the image is invalid; empty when it is valid.
QString BuildRunner::imageProblem() const
{
    const FileState written = FileState::ofLink(result.imageFile);
    if (!written.exists) {
        return tr("The stitcher ended without writing %1.").arg(result.imageFile);
    }
    if (!written.isRegular()) {
        return tr("The image %1 that the stitcher wrote is not a regular file.")
            .arg(result.imageFile);
    }
    if (written.size == 0) {
        return tr("The stitcher wrote nothing into %1.").arg(result.imageFile);
    }
    if (image->isOlderImage(written)) {
        return tr("The stitcher put the older image back instead of writing %1.")
            .arg(result.imageFile);
    }
    return {};
}

/// Why the files that the image is made of are not the same any more; empty when they are.
QString BuildRunner::changeProblem() const
{
    const QString file = changedFile();
    return file.isEmpty() ? QString() : tr("%1 changed during the build.").arg(file);
}

/// Names a file that has changed since its state was noted; empty when none has.
QString BuildRunner::changedFile() const
{
    const QAbstractItemModel &model = *session->ingredientManager()->getIngredients();
    for (const Ingredient &ingredient : ingredientsOf(model)) {
        const QString file = textOf(ingredient.value);
        const auto state = result.inputStates.constFind(file);
        if (state != result.inputStates.constEnd() && FileState::of(file) != *state) {
            return tr("The input file %1 (%2)").arg(file, ingredient.name);
        }
    }
    return FileState::of(result.stitcher) == result.stitcherState
        ? QString()
        : tr("The stitcher %1").arg(result.stitcher);
}

void BuildRunner::finishHashing(const QList<FileHash> &hashes)
{
    const FileHash &hash = hashes.first();
    if (FileState::ofLink(result.imageFile) != imageState) {
        conclude(tr("The image %1 changed while it was hashed.").arg(result.imageFile));
        return;
    }
    if (!hash.error.isEmpty()) {
        conclude(tr("The image %1 cannot be read: %2.").arg(hash.file, hash.error));
        return;
    }
    result.imageSize = hash.size;
    result.sha256 = hash.sha256;
    conclude({});
}

void BuildRunner::concludeSoon(const QString &reason)
{
    QTimer::singleShot(0, this, [this, reason] { conclude(reason); });
}

void BuildRunner::conclude(const QString &reason)
{
    if (isConcluded) {
        return;
    }
    isConcluded = true;
    timeoutTimer.stop();
    giveUpTimer.stop();

    result.reason = reason;
    if (image && reason.isEmpty()) {
        result.reason = image->accept();
    } else if (image) {
        if (run && run->isRunning()) {
            image->leaveLock();
        }
        result.reason = joined(result.reason, image->reject());
        result.partialFile = image->partialFile();
    }
    result.isSuccess = result.reason.isEmpty();
    if (!result.isSuccess) {
        result.imageSize = 0;
        result.sha256.clear();
    }
    if (!result.partialFile.isEmpty()) {
        result.reason
            = joined(result.reason, tr("What it wrote is kept as %1.").arg(result.partialFile));
    }
    removeWorkDirectory();
    emit finished(result);
}
