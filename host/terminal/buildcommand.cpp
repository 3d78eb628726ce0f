// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/buildrunner.h"
#include "host/core/commandpreview.h"
#include "host/core/filehasher.h"
#include "host/core/filestate.h"
#include "host/core/imagejob.h"
#include "host/core/manifest.h"
#include "host/core/manifestwriter.h"
#include "host/core/pluginsession.h"
#include "host/core/stitcherlocator.h"
#include "host/core/terminalcommand.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/interruptwatch.h"
#include "host/terminal/report.h"
#include "plugin/iloomwrightplugin.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>

#include <csignal>

namespace {

const char notBuilding[] = "Not building: see the errors above.";

int fail(CommandContext &context, const QString &text)
{
    context.report.addFailure(text);
    return Failed;
}

/// Shows what blocks the build; true when something does.
bool isBlocked(CommandContext &context)
{
    const bool checked = context.commandLine.isChecked;
    if (checked || context.job->isBlocked(false)) {
        reportChecks(context);
    }
    if (!context.job->isBlocked(checked)) {
        return false;
    }
    context.report.addFailure(
        QLatin1String(notBuilding)
        + QLatin1String(context.job->isBlocked(false) ? "" : " Use --no-check to build anyway."));
    return true;
}

/// Why no manifest could be written after the build; empty when one can.
QString manifestProblem(const CommandContext &context)
{
    const QString file = context.commandLine.manifestFile;
    if (file.isEmpty()) {
        return {};
    }
    const QFileInfo info(file);
    const QString image = textOf(outputIngredient(context.job->ingredients()).value);
    if (info.absoluteFilePath() == image
        || FileState::of(file).isSameFileAs(FileState::of(image))) {
        return QStringLiteral("The manifest and the image are the same file.");
    }
    if (!QFileInfo(info.absolutePath()).isDir()) {
        return QStringLiteral("The directory of the manifest %1 does not exist.").arg(file);
    }
    return context.job->overwriteProblem(file);
}

int showPreview(CommandContext &context, const QString &stitcher)
{
    const CommandPreview preview = previewCommand(context.session, stitcher);
    if (!preview.problem.isEmpty()) {
        return fail(context, preview.problem);
    }
    QStringList words;
    for (const QString &word : preview.commandLine) {
        words.append(shellQuoted(word));
    }
    Report &report = context.report;
    report.printRaw(preview.configuration);
    report.print(QLatin1String("\nCommand line: ") + words.join(QLatin1Char(' ')));
    report.set("config", QString::fromLocal8Bit(preview.configuration));
    report.set("commandLine", QJsonArray::fromStringList(preview.commandLine));
    return Success;
}

QString interruptReason(int signalNumber)
{
    return signalNumber == SIGPIPE ? QStringLiteral("The output was closed by its reader.")
                                   : QStringLiteral("It was interrupted.");
}

BuildResult runStitcher(CommandContext &context, const QString &stitcher)
{
    Report &report = context.report;
    BuildRunner runner(context.session);
    BuildResult result;
    QEventLoop loop;
    QObject::connect(&runner, &BuildRunner::finished, &loop, [&](const BuildResult &finished) {
        result = finished;
        loop.quit();
    });
    QObject::connect(&runner, &BuildRunner::hashing, &loop, [&](qint64 done, qint64 total) {
        report.showProgress(
            QStringLiteral("Hashing the image: %1%").arg(total > 0 ? done * 100 / total : 100));
    });
    InterruptWatch interrupts(report.queue());
    QObject::connect(&interrupts, &InterruptWatch::interrupted, &runner, [&](int signalNumber) {
        report.setEndSignal(signalNumber);
        runner.stop(interruptReason(signalNumber));
    });
    BuildOptions options;
    options.stitcher = stitcher;
    options.timeoutMs = context.commandLine.timeoutMs;
    options.keepWork = context.commandLine.isWorkKept;
    runner.start(options);
    // Messages up to here, while the stitcher was being started, were the plug-in's own.
    report.setSource(Report::Source::Stitcher);
    loop.exec();
    report.setSource(Report::Source::Plugin);
    report.showProgress(QString());
    return result;
}

int showResult(CommandContext &context, const BuildResult &result)
{
    Report &report = context.report;
    report.set(
        "stitcher",
        QJsonObject{{QStringLiteral("file"), result.stitcher},
                    {QStringLiteral("exitStatus"),
                     result.exitStatus < 0 ? QJsonValue() : QJsonValue(result.exitStatus)},
                    {QStringLiteral("signal"),
                     result.signalNumber == 0 ? QJsonValue() : QJsonValue(result.signalNumber)}});
    if (!result.workDirectory.isEmpty()) {
        report.print(QStringLiteral("Work directory: %1").arg(result.workDirectory));
        report.set("workDirectory", result.workDirectory);
    }
    if (!result.isSuccess) {
        report.set("image", result.imageFile);
        report.set("elapsedMs", result.elapsedMs);
        if (!result.partialFile.isEmpty()) {
            report.set("partialFile", result.partialFile);
        }
        return fail(context, QLatin1String("The build failed. ") + result.reason);
    }
    report.add({{"Image", "image", result.imageFile},
                {"Size", "size", result.imageSize, sizeText(result.imageSize)},
                {"SHA-256", "sha256", QLatin1String(result.sha256)},
                {"Time", "elapsedMs", result.elapsedMs,
                 QStringLiteral("%1 s").arg(double(result.elapsedMs) / 1000, 0, 'f', 2)}});
    return Success;
}

/// The inputs with their hashes, computed before the build, and the states of the files at that
/// time.
struct LockedInputs {
    Project project;
    QList<FileHash> hashes;
    QVector<FileState> states;
};

bool hashInputs(CommandContext &context, LockedInputs *inputs)
{
    inputs->project = context.job->project();
    const QStringList paths = inputPaths(inputs->project, context.job->ingredients());
    for (const QString &path : paths) {
        inputs->states.append(FileState::of(path));
    }
    return hashFiles(context, paths, &inputs->hashes);
}

int writeManifest(CommandContext &context, const BuildResult &result, LockedInputs inputs)
{
    for (int i = 0; i < inputs.states.count(); ++i) {
        const QString file = inputs.hashes.at(i).file;
        if (FileState::of(file) != inputs.states.at(i)) {
            return fail(context,
                        QStringLiteral("No manifest is written: %1 changed meanwhile.").arg(file));
        }
    }
    QList<FileHash> stitcher;
    if (!hashFiles(context, {result.stitcher}, &stitcher) || !stitcher.first().error.isEmpty()) {
        return fail(context,
                    QStringLiteral("No manifest is written: the stitcher cannot be read."));
    }
    setInputHashes(&inputs.project, inputs.hashes);
    inputs.project.build = buildRecordOf(result, context.session->plugin()->getPluginVersion());
    inputs.project.build->stitcherSha256 = stitcher.first().sha256;
    const QString file = QDir::current().absoluteFilePath(context.commandLine.manifestFile);
    const QString problem = writeProject(file, inputs.project);
    if (!problem.isEmpty()) {
        return fail(context, problem);
    }
    context.report.add({{"Manifest", "manifest", file}});
    return Success;
}

} // namespace

int buildImage(CommandContext &context)
{
    const CommandLine &commandLine = context.commandLine;
    if (isBlocked(context)) {
        return Failed;
    }
    const QString problem = manifestProblem(context);
    const StitcherLocation stitcher = locateStitcher(commandLine.stitcherFile);
    if (!problem.isEmpty() || stitcher.file.isEmpty()) {
        return fail(context, problem.isEmpty() ? stitcher.problem : problem);
    }
    if (commandLine.isDryRun) {
        return showPreview(context, stitcher.file);
    }
    LockedInputs inputs;
    if (!commandLine.manifestFile.isEmpty() && !hashInputs(context, &inputs)) {
        return fail(context, QStringLiteral("The build was interrupted."));
    }
    const BuildResult result = runStitcher(context, stitcher.file);
    const int status = showResult(context, result);
    return status == Success && !commandLine.manifestFile.isEmpty()
        ? writeManifest(context, result, inputs)
        : status;
}
