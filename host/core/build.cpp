// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/build.h"

#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/stitcherrun.h"
#include "host/core/values.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
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

Build::Build(Plugin *loadedPlugin, Values *imageValues, const BuildOptions &buildOptions,
             QObject *parent)
    : QObject(parent)
    , plugin(loadedPlugin)
    , values(imageValues)
    , options(buildOptions)
{
    giveUpTimer.setSingleShot(true);
    giveUpTimer.setInterval(giveUpMs);
    connect(&giveUpTimer, &QTimer::timeout, this, &Build::giveUp);
    connect(&hasher, &FileHasher::finished, this, &Build::publish);
}

Build::~Build()
{
    run.reset(); // Before the directories are removed.
}

void Build::start()
{
    elapsed.start();
    const QString problem = prepare();
    if (!problem.isEmpty()) {
        conclude(problem);
    }
}

/// Does everything up to the start of the runner. Returns why the build cannot start.
QString Build::prepare()
{
    values->makePathsAbsolute();
    result.image.file = values->image();
    result.commandLine.append(options.stitcher);
    if (result.image.file.isEmpty()) {
        return QStringLiteral("No image is named.");
    }
    // A directory that is a symlink must not lead elsewhere in the end.
    target = placeOf(result.image.file);
    const FileState older = FileState::ofLink(target);
    if (older.exists && !older.isRegular()) {
        return QStringLiteral("The image %1 is not a regular file.").arg(result.image.file);
    }
    QString problem = recordFiles();
    if (problem.isEmpty()) {
        problem = createDirectories();
    }
    return problem.isEmpty() ? startStitcher() : problem;
}

/// Records what the image will be made from. Returns why it must not be built from that.
QString Build::recordFiles()
{
    const auto knownOr = [this](const QString &file) {
        return options.known.contains(file) ? options.known.value(file) : recordOf(file);
    };
    for (const QString &file : inputFilesOf(values->ingredients())) {
        result.inputs.append(knownOr(file));
    }
    result.stitcher = knownOr(options.stitcher);
    if (FileState::of(target).isSameFileAs(result.stitcher.state)) {
        return QStringLiteral("The image and the stitcher are the same file.");
    }
    const QString changed = changeProblem();
    return changed.isEmpty() ? QString() : QStringLiteral("%1 since it was checked.").arg(changed);
}

QString Build::createDirectories()
{
    QString problem = temporaryDirectoryProblem();
    if (!problem.isEmpty()) {
        return problem;
    }
    const QString parent = absolutePath(QDir::tempPath());
    problem = work.create(parent, QStringLiteral("loomwright-"));
    if (!problem.isEmpty()) {
        return QStringLiteral("Temporary files cannot be created in %1: %2.").arg(parent, problem);
    }
    if (options.isDryRun) {
        return {};
    }
    stage = std::make_unique<StagedFile>(target);
    return stage->create();
}

/// Lets the plug-in start the runner, with the staged path in its configuration.
QString Build::startStitcher()
{
    run = std::make_unique<StitcherRun>();
    connect(run.get(), &StitcherRun::started, this, &Build::permitStitcher);
    connect(run.get(), &StitcherRun::stitcherEnded, this, &Build::judgeStitcher);
    connect(run.get(), &StitcherRun::ended, this, &Build::endRun);
    StitcherRequest request;
    request.stitcher = options.stitcher;
    request.stagingDirectory = stage ? stage->directory().path() : QString();
    request.workDirectory = work.path();
    request.timeoutMs = options.timeoutMs;
    request.isKept = options.keepWork;
    const auto begin = [this] { plugin->executionManager()->beginExecution(); };
    const auto errors = connect(plugin, &Plugin::errorMessage, this, [this](const QString &error) {
        startError = joined(startError, error.trimmed());
    });
    QString problem
        = run->start(request, [&] { stage ? values->withImage(stage->path(), begin) : begin(); });
    disconnect(errors);
    if (!problem.isEmpty()) {
        run.reset();
    }
    return problem;
}

/// Lets the stitcher start if it will write what this build publishes.
void Build::permitStitcher()
{
    if (phase != Phase::Stitching) {
        return;
    }
    result.configuration = contentOf(pathIn(work.path(), QLatin1String(configurationFile)));
    result.commandLine += run->commandLine();
    if (options.isDryRun) {
        conclude();
        return;
    }
    const QByteArray staged = QFile::encodeName(stage->path());
    if (!result.configuration.contains(staged) && !result.commandLine.contains(stage->path())) {
        fail(QStringLiteral("The plug-in did not pass the image's path on to the stitcher."));
        return;
    }
    // The rest of the world knows the image by the user's path.
    result.configuration.replace(staged, QFile::encodeName(result.image.file));
    result.commandLine.replaceInStrings(stage->path(), result.image.file);
    run->permit();
    hasher.add(result.inputs + QList<FileRecord>{result.stitcher}); // While the stitcher runs.
}

void Build::judgeStitcher()
{
    result.exitStatus = run->reported(RunnerStatus::Exited).value_or(-1);
    result.signalNumber = run->reported(RunnerStatus::Signaled).value_or(0);
    if (phase == Phase::Concluded) {
        return;
    }
    QString problem = phase == Phase::Stopping ? result.reason : stitcherProblem();
    if (problem.isEmpty()) {
        problem = imageProblem();
    }
    if (!problem.isEmpty()) {
        conclude(problem);
        return;
    }
    phase = Phase::Hashing;
    connect(&hasher, &FileHasher::progress, this, &Build::hashing);
    hasher.add({recordOf(stage->path())});
}

/// Why the way the stitcher ended is a failure; empty when it succeeded.
QString Build::stitcherProblem() const
{
    if (!run->reported(RunnerStatus::Started)) {
        return joined(QStringLiteral("The stitcher was not started."), startError);
    }
    const std::optional<int> startErrorNumber = run->reported(RunnerStatus::StartFailed);
    if (startErrorNumber == ENOENT && QFile::exists(options.stitcher)) {
        return QStringLiteral("The stitcher %1 could not be started: its interpreter is missing.")
            .arg(options.stitcher);
    }
    if (startErrorNumber) {
        return QStringLiteral("The stitcher %1 could not be started: %2.")
            .arg(options.stitcher, qt_error_string(*startErrorNumber));
    }
    if (!run->reported(RunnerStatus::Finished)) {
        return QStringLiteral("The program that supervises the stitcher was killed.");
    }
    if (run->reported(RunnerStatus::TimedOut)) {
        return QStringLiteral("The stitcher did not finish within %1 s and was terminated.")
            .arg(options.timeoutMs / 1000.0);
    }
    if (result.signalNumber != 0) {
        return QStringLiteral("The stitcher was killed by signal %1 (%2).")
            .arg(result.signalNumber)
            .arg(QString::fromLocal8Bit(strsignal(result.signalNumber)));
    }
    if (result.exitStatus > 0) {
        return QStringLiteral("The stitcher failed with exit status %1.").arg(result.exitStatus);
    }
    if (run->reported(RunnerStatus::Stopped)) {
        return QStringLiteral("The program that supervises the stitcher was stopped by a signal.");
    }
    if (run->reported(RunnerStatus::LeftBehind)) {
        return QStringLiteral("The stitcher finished, but left processes running. They were "
                              "terminated, so the image may be incomplete.");
    }
    return {};
}

/// Why the image that the stitcher wrote is invalid; empty when it is valid.
QString Build::imageProblem() const
{
    if (!stage->directory().isIntact()) {
        return QStringLiteral(
            "The stitcher replaced or removed the directory that it had to write to.");
    }
    const FileState written = FileState::ofLink(stage->path());
    if (!written.exists) {
        return QStringLiteral("The stitcher finished without writing %1.").arg(result.image.file);
    }
    if (!written.isRegular()) {
        return QStringLiteral("The image %1 that the stitcher wrote is not a regular file.")
            .arg(result.image.file);
    }
    if (written.size == 0) {
        return QStringLiteral("The stitcher wrote nothing into %1.").arg(result.image.file);
    }
    if (FileState::of(target).isSameFileAs(written)) {
        return QStringLiteral("The stitcher linked the older image instead of writing %1.")
            .arg(result.image.file);
    }
    const std::optional<int> syncError = run->reported(RunnerStatus::SyncFailed);
    return syncError ? QStringLiteral("The image %1 could not be stored: %2.")
                           .arg(result.image.file, qt_error_string(*syncError))
                     : QString();
}

/// Names a file that has changed since its state was noted: "The stitcher /x has changed". Empty
/// when none has.
QString Build::changeProblem() const
{
    const auto changed = std::find_if_not(result.inputs.begin(), result.inputs.end(), isUnchanged);
    if (changed != result.inputs.end()) {
        QStringList names;
        for (const Ingredient &ingredient : values->ingredients()) {
            if (ingredient.isInputFile() && absolutePath(ingredient.text()) == changed->file) {
                names.append(ingredient.id.name);
            }
        }
        return QStringLiteral("The input file %1 (%2) has changed")
            .arg(changed->file, names.join(QStringLiteral(", ")));
    }
    return isUnchanged(result.stitcher)
        ? QString()
        : QStringLiteral("The stitcher %1 has changed").arg(result.stitcher.file);
}

/// The last step: nothing has been changed before, and nothing can fail afterwards.
/// @param hashed the inputs, the stitcher and, when the stitcher has ended, the staged image
void Build::publish(const QList<FileRecord> &hashed)
{
    if (phase != Phase::Hashing) {
        return;
    }
    const FileRecord &staged = hashed.last();
    result.inputs = hashed.mid(0, result.inputs.count());
    result.stitcher = hashed.at(result.inputs.count());
    // Open, so that its state is known even if another build replaces it at once.
    QFile built(staged.file);
    const bool readable = built.open(QIODevice::ReadOnly);
    QString problem;
    const QString changed = changeProblem();
    if (!staged.error.isEmpty()) {
        problem = QStringLiteral("The image %1 cannot be hashed: %2.")
                      .arg(result.image.file, staged.error);
    } else if (!readable || FileState::ofDescriptor(built.handle()) != staged.state) {
        problem
            = QStringLiteral("The image %1 changed after it was hashed.").arg(result.image.file);
    } else if (!changed.isEmpty()) {
        problem = QStringLiteral("%1 during the build.").arg(changed);
    } else if (options.isInterrupted && options.isInterrupted()) {
        problem = QStringLiteral("It was interrupted.");
    } else {
        problem = publishFiles();
    }
    if (!problem.isEmpty()) {
        conclude(problem);
        return;
    }
    result.image.sha256 = staged.sha256;
    result.image.state
        = FileState::ofDescriptor(built.handle()); // Renaming changes the status time.
    completeManifest();
    conclude();
}

/// Why another file that the stitcher wrote must not be published; empty when all may.
QString Build::otherFilesProblem() const
{
    QStringList used = values->protectedFiles();
    used.append(options.stitcher);
    const QString place = QFileInfo(target).path();
    for (const QString &name : stage->otherNames()) {
        const QString file = pathIn(place, name);
        if (!FileState::ofLink(pathIn(stage->directory().path(), name)).isRegular()) {
            return QStringLiteral("The stitcher wrote %1, which is not a regular file.").arg(file);
        }
        const FileState older = FileState::ofLink(file);
        if (older.exists && !older.isRegular()) {
            return QStringLiteral("The stitcher wrote %1, but what is there is not a regular file.")
                .arg(file);
        }
        const bool isUsed = std::any_of(used.begin(), used.end(), [&](const QString &each) {
            return FileState::of(each).isSameFileAs(older) || placeOf(each) == file;
        });
        if (isUsed) {
            return QStringLiteral("The stitcher wrote %1, which is in use and is not replaced.")
                .arg(file);
        }
    }
    return {};
}

/// Renames what the stitcher wrote, the image last. Returns why that failed.
QString Build::publishFiles()
{
    QString problem = otherFilesProblem();
    if (!problem.isEmpty()) {
        return problem;
    }
    const QString place = QFileInfo(target).path();
    QString file;
    for (const QString &name : stage->otherNames()) {
        file = pathIn(place, name);
        problem = stage->publishOther(name);
        if (!problem.isEmpty()) {
            break;
        }
        result.otherFiles.append(file);
    }
    if (problem.isEmpty()) {
        file = result.image.file;
        problem = stage->publish();
    }
    if (problem.isEmpty()) {
        return {};
    }
    stage->directory().keep();
    result.keptDirectory = stage->directory().path();
    return QStringLiteral("%1 cannot be replaced: %2. The complete image is %3.")
        .arg(file, problem, stage->path());
}

void Build::completeManifest()
{
    result.manifest = values->project();
    for (ProjectEntry &entry : result.manifest.entries) {
        for (const FileRecord &input : qAsConst(result.inputs)) {
            if (entry.kind == ValueKind::File && entry.value == input.file) {
                entry.size = input.state.size;
                entry.sha256 = input.sha256;
            }
        }
    }
    BuildRecord record;
    record.imageFile = result.image.file;
    record.imageSize = result.image.state.size;
    record.imageSha256 = result.image.sha256;
    record.configuration = QString::fromLocal8Bit(result.configuration);
    record.stitcherFile = result.stitcher.file;
    record.stitcherSha256 = result.stitcher.sha256;
    record.stitcherExitStatus = result.exitStatus;
    record.hostVersion = QStringLiteral(LOOMWRIGHT_VERSION);
    record.pluginVersion = plugin->root()->getPluginVersion();
    record.qtVersion = QLatin1String(qVersion());
    record.time = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    result.manifest.build = record;
}

void Build::stop(const QString &reason)
{
    if (phase == Phase::Stitching || phase == Phase::Hashing) {
        result.isStopped = true;
        fail(reason);
    }
}

/// Ends the build because of @p reason, after the stitcher if that is running.
void Build::fail(const QString &reason)
{
    if (phase == Phase::Hashing) {
        conclude(reason);
        return;
    }
    phase = Phase::Stopping;
    result.reason = reason;
    run->stop();
    giveUpTimer.start();
}

/// Settles the result: a failure if there is a reason. The runner then only has to exit.
void Build::conclude(const QString &reason)
{
    phase = Phase::Concluded;
    giveUpTimer.stop();
    hasher.cancel();
    result.reason = reason;
    result.isSuccess = reason.isEmpty();
    if (!result.isSuccess) {
        result.image.state = FileState();
        result.image.sha256.clear();
    }
    if (options.keepWork) {
        work.keep();
        result.workDirectory = work.path();
    }
    if (stage && !result.isSuccess && options.keepWork) {
        stage->directory().keep();
        result.keptDirectory = stage->directory().path();
    }
    if (run) {
        run->finish();
    } else {
        QTimer::singleShot(0, this, &Build::finish);
    }
}

/// The runner has ended: as it was told to, or because it was killed after the stitcher.
void Build::endRun()
{
    if (phase == Phase::Concluded) {
        finish();
    } else {
        run.release()->deleteLater(); // It is the caller.
    }
}

/// Does not wait for a stitcher that cannot be killed, for example because of a broken disk.
void Build::giveUp()
{
    conclude(result.reason);
    disconnect(run.get(), nullptr, this, nullptr);
    finish();
}

void Build::finish()
{
    if (stage && !stage->directory().remove() && !result.isSuccess) {
        result.keptDirectory = stage->directory().path();
    }
    if (!work.remove()) {
        result.workDirectory = work.path();
    }
    result.elapsedMs = elapsed.elapsed();
    emit finished(result);
}

QString writeManifest(const BuildResult &result, const QString &file)
{
    for (const FileRecord &record : result.inputs + QList<FileRecord>{result.stitcher}) {
        if (!record.error.isEmpty()) {
            return QStringLiteral("No manifest can be written: %1: %2.")
                .arg(record.file, record.error);
        }
    }
    if (result.otherFiles.contains(file)) {
        return QStringLiteral("The manifest %1 is not written: the stitcher wrote that file.")
            .arg(file);
    }
    const auto isReplaced
        = [&result] { return FileState::ofLink(result.image.file) != result.image.state; };
    QString replaced = QStringLiteral("The manifest %1 is not valid: the image %2 was replaced or "
                                      "changed after the build.")
                           .arg(file, result.image.file);
    if (isReplaced()) {
        return replaced;
    }
    QString problem = writeProject(file, result.manifest);
    // Once more: this may have been the image of a build that has this image as its manifest.
    return problem.isEmpty() && isReplaced() ? replaced : problem;
}
