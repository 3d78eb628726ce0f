// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/build.h"
#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/signalwatch.h"
#include "host/core/stitcher.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"

#include <QEventLoop>

#include <algorithm>
#include <csignal>

namespace {

/// Shows what blocks the build; true when something does.
bool isBlocked(CommandContext &context)
{
    const bool checked = !context.commandLine.isUnchecked;
    const Values &values = *context.values;
    context.values->check();
    reportChecks(context, checked || values.isBlocked(false) || context.report.isVerbose());
    if (values.isBlocked(checked)) {
        const bool helps = !values.isBlocked(false);
        context.report.addFailure(QLatin1String("Not building: see the errors above.")
                                  + QLatin1String(helps ? " Use --no-check to build anyway." : ""));
        return true;
    }
    const Problems problems = values.problems();
    const auto ignored = std::count_if(problems.begin(), problems.end(), [](const Problem &each) {
        return each.severity == Severity::Error;
    });
    if (ignored > 0) {
        context.report.addWarning(
            QStringLiteral(
                "Errors ignored because of --no-check: %1. The command check lists them.")
                .arg(ignored));
    }
    return false;
}

/// Why no manifest could be written to @p file after the build; empty when one can.
QString manifestProblem(const CommandContext &context, const QString &file, const QString &stitcher)
{
    if (file.isEmpty()) {
        return {};
    }
    if (FileState::of(file).isSameFileAs(FileState::of(stitcher))) {
        return QStringLiteral("The manifest and the stitcher are the same file.");
    }
    return context.values->overwriteProblem(file);
}

/// What is known of the inputs and of the stitcher; the comparison with a manifest came first.
FileRecords knownFiles(const CommandContext &context, const QString &stitcher)
{
    FileRecords files = context.values->inputRecords();
    files.insert(stitcher, recordOf(stitcher));
    for (const FileRecord &locked : context.lockedFiles) {
        files.insert(locked.file, locked);
    }
    return files;
}

QString interruptReason(const CommandContext &context)
{
    return context.signalWatch.received() == SIGPIPE
        ? QStringLiteral("The output was closed by its reader.")
        : QStringLiteral("It was interrupted.");
}

BuildResult run(CommandContext &context, const BuildOptions &options)
{
    Report &report = context.report;
    Build build(context.plugin, context.values, options);
    BuildResult result;
    QEventLoop loop;
    QObject::connect(&build, &Build::finished, &loop, [&](const BuildResult &finished) {
        result = finished;
        loop.quit();
    });
    context.signalWatch.whenReceived(&build, [&] { build.stop(interruptReason(context)); });
    build.start();
    // Messages up to here, while the stitcher was being started, were the plug-in's own.
    report.setSource(Report::Source::Stitcher);
    loop.exec();
    report.setSource(Report::Source::Plugin);
    return result;
}

int showDryRun(CommandContext &context, const BuildResult &result)
{
    Report &report = context.report;
    if (!result.isSuccess) {
        return report.addFailure(result.reason);
    }
    QStringList words;
    for (const QString &word : result.commandLine) {
        words.append(shellQuoted(word));
    }
    report.printRaw(result.configuration);
    report.print(QLatin1String("\nCommand line: ") + words.join(QLatin1Char(' ')));
    report.set("config", QString::fromLocal8Bit(result.configuration));
    report.set("commandLine", QJsonArray::fromStringList(result.commandLine));
    return Success;
}

void showDirectory(Report &report, const char *title, const char *name, const QString &directory)
{
    if (!directory.isEmpty()) {
        report.print(QLatin1String(title) + QLatin1String(": ") + directory);
        report.set(name, directory);
    }
}

int showResult(CommandContext &context, const BuildResult &result)
{
    Report &report = context.report;
    report.set(
        "stitcher",
        QJsonObject{{QStringLiteral("file"), result.stitcher.file},
                    {QStringLiteral("exitStatus"),
                     result.exitStatus < 0 ? QJsonValue() : QJsonValue(result.exitStatus)},
                    {QStringLiteral("signal"),
                     result.signalNumber == 0 ? QJsonValue() : QJsonValue(result.signalNumber)}});
    showDirectory(report, "Work directory", "workDirectory", result.workDirectory);
    showDirectory(report, "Kept files", "keptDirectory", result.keptDirectory);
    if (!result.isSuccess) {
        report.set("image", result.image.file);
        report.set("elapsedMs", result.elapsedMs);
        return report.addFailure(QLatin1String("The build failed. ") + result.reason);
    }
    report.add({{"Image", "image", result.image.file},
                {"Size", "size", result.image.state.size, sizeText(result.image.state.size)},
                {"SHA-256", "sha256", QLatin1String(result.image.sha256)},
                {"Time", "elapsedMs", result.elapsedMs,
                 QStringLiteral("%1 s").arg(double(result.elapsedMs) / 1000, 0, 'f', 2)}});
    if (!result.otherFiles.isEmpty()) {
        report.add({{"Others", "otherFiles", QJsonArray::fromStringList(result.otherFiles),
                     result.otherFiles.join(QStringLiteral(", "))}});
    }
    return Success;
}

} // namespace

int buildImage(CommandContext &context)
{
    const CommandLine &commandLine = context.commandLine;
    if (isBlocked(context) || context.isInterrupted()) {
        return Failed;
    }
    const QString manifest
        = commandLine.manifestFile.isEmpty() ? QString() : resolvedTarget(commandLine.manifestFile);
    const StitcherLocation stitcher = locateStitcher(commandLine.stitcherFile);
    const QString problem = stitcher.file.isEmpty()
        ? stitcher.problem
        : manifestProblem(context, manifest, stitcher.file);
    if (!problem.isEmpty()) {
        return context.report.addFailure(problem);
    }
    BuildOptions options;
    options.stitcher = stitcher.file;
    options.timeoutMs = commandLine.timeoutMs;
    options.keepWork = commandLine.isWorkKept;
    options.isDryRun = commandLine.isDryRun;
    options.known = knownFiles(context, stitcher.file);
    options.isInterrupted = [&context] { return context.isInterrupted(); };
    const BuildResult result = run(context, options);
    if (options.isDryRun) {
        return showDryRun(context, result);
    }
    const int status = showResult(context, result);
    if (status != Success || manifest.isEmpty()) {
        return status;
    }
    const QString manifestFailure = context.isInterrupted()
        ? QStringLiteral("No manifest is written: it was interrupted.")
        : writeManifest(result, manifest);
    if (!manifestFailure.isEmpty()) {
        return context.report.addFailure(manifestFailure);
    }
    context.report.add({{"Manifest", "manifest", manifest}});
    return Success;
}
