// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/buildrunner.h"
#include "host/core/commandpreview.h"
#include "host/core/filehasher.h"
#include "host/core/files.h"
#include "host/core/filestate.h"
#include "host/core/imagejob.h"
#include "host/core/manifest.h"
#include "host/core/manifestwriter.h"
#include "host/core/pluginsession.h"
#include "host/core/signalwatch.h"
#include "host/core/stitcherlocator.h"
#include "host/core/terminalcommand.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"
#include "plugin/iloomwrightplugin.h"

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
    reportChecks(context, checked || context.job->isBlocked(false) || context.report.isVerbose());
    if (!context.job->isBlocked(checked)) {
        const int count = context.job->problems().count();
        if (count > 0) {
            context.report.addWarning(
                QStringLiteral("Problems ignored because of --no-check: %1. The command check "
                               "lists them.")
                    .arg(count));
        }
        return false;
    }
    context.report.addFailure(
        QLatin1String(notBuilding)
        + QLatin1String(context.job->isBlocked(false) ? "" : " Use --no-check to build anyway."));
    return true;
}

/// Why no manifest could be written after the build; empty when one can.
QString manifestProblem(const CommandContext &context, const QString &stitcher)
{
    const QString file = context.commandLine.manifestFile;
    if (file.isEmpty()) {
        return {};
    }
    if (FileState::of(file).isSameFileAs(FileState::of(stitcher))) {
        return QStringLiteral("The manifest and the stitcher are the same file.");
    }
    const QString problem = projectFileProblem(file);
    return problem.isEmpty() ? context.job->overwriteProblem(file) : problem;
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

QString interruptReason(const CommandContext &context)
{
    return context.signalWatch.received() == SIGPIPE
        ? QStringLiteral("The output was closed by its reader.")
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
    context.signalWatch.whenReceived(&runner, [&] { runner.stop(interruptReason(context)); });
    BuildOptions options;
    options.stitcher = stitcher;
    options.timeoutMs = context.commandLine.timeoutMs;
    options.keepWork = context.commandLine.isWorkKept;
    options.knownStates = context.inputStates;
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

/// Hashes the inputs and the stitcher for the manifest. The build fails if one changes after that, so
/// the hashes are those of what the image is made from.
bool hashForManifest(CommandContext &context, const QString &stitcher, QList<FileHash> *hashes)
{
    noteStates(context, {stitcher});
    const QStringList inputs = inputFilesOf(context.job->ingredients());
    if (!hashFiles(context, inputs + QStringList(stitcher), hashes)) {
        context.report.addFailure(QStringLiteral("The build was interrupted."));
        return false;
    }
    for (const FileHash &hash : qAsConst(*hashes)) {
        if (!hash.error.isEmpty()) {
            context.report.addFailure(
                QStringLiteral("No manifest can be written: %1: %2.").arg(hash.file, hash.error));
            return false;
        }
    }
    return true;
}

int writeManifest(CommandContext &context, const BuildResult &result, const QList<FileHash> &hashes)
{
    Project manifest = context.job->project();
    setInputHashes(&manifest, hashes);
    manifest.build = buildRecordOf(result, context.session->plugin()->getPluginVersion());
    manifest.build->stitcherSha256 = hashes.last().sha256;
    const QString file = absolutePath(context.commandLine.manifestFile);
    const QString problem = writeProject(file, manifest);
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
    noteStates(context, inputFilesOf(context.job->ingredients()));
    if (isBlocked(context) || context.isInterrupted()) {
        return Failed;
    }
    const StitcherLocation stitcher = locateStitcher(commandLine.stitcherFile);
    const QString problem
        = stitcher.file.isEmpty() ? stitcher.problem : manifestProblem(context, stitcher.file);
    if (!problem.isEmpty()) {
        return fail(context, problem);
    }
    if (commandLine.isDryRun) {
        return showPreview(context, stitcher.file);
    }
    const bool hasManifest = !commandLine.manifestFile.isEmpty();
    QList<FileHash> hashes;
    if (hasManifest && !hashForManifest(context, stitcher.file, &hashes)) {
        return Failed;
    }
    if (context.isInterrupted()) {
        return Failed;
    }
    const BuildResult result = runStitcher(context, stitcher.file);
    const int status = showResult(context, result);
    return status == Success && hasManifest && !context.isInterrupted()
        ? writeManifest(context, result, hashes)
        : status;
}
