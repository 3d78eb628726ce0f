// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filehasher.h"
#include "host/core/files.h"
#include "host/core/findings.h"
#include "host/core/imagejob.h"
#include "host/core/manifest.h"
#include "host/core/pluginsession.h"
#include "host/core/projectfile.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"
#include "plugin/iingredientmanager.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

namespace {

/// Whether findings block writing a file; shows them. Refused inputs have been shown already.
bool isRefused(CommandContext &context, const QString &conclusion)
{
    if (!context.job->isBlocked(false)) {
        return false;
    }
    const QVector<Problem> problems = context.job->problems();
    for (const Problem &problem : problems) {
        if (problem.mustBeFixed && problem.kind == ProblemKind::Finding) {
            context.report.printError(problem.ingredient + QLatin1String(": ") + problem.text);
        }
    }
    context.report.addFailure(conclusion + QLatin1String(": see the errors above."));
    return true;
}

/// Whether the command may write its output file; shows why not.
bool mayWrite(CommandContext &context)
{
    if (context.isInterrupted()) {
        return false;
    }
    const QString file = context.commandLine.outputFile;
    const QString problem = file.isEmpty() ? QString() : context.job->overwriteProblem(file);
    if (!problem.isEmpty()) {
        context.report.addFailure(problem);
    }
    return problem.isEmpty();
}

/// Warns about values that loading the configuration in @p file would not restore.
void warnAboutConfig(CommandContext &context, const QString &file)
{
    for (const QString &remark : configurationRemarks(context.job->ingredients(), file)) {
        context.report.addWarning(remark);
    }
}

void showDifferences(CommandContext &context, const QVector<Problem> &differences)
{
    std::vector<Record> rows;
    for (const Problem &difference : differences) {
        rows.push_back({{"Changed", nullptr, difference.ingredient},
                        {"Difference", nullptr, difference.text},
                        {"Recorded", nullptr, difference.required},
                        {"Found", nullptr, difference.actual},
                        {"File", nullptr, difference.file}});
        context.report.noteProblem(difference);
    }
    context.report.printTable(rows);
}

} // namespace

int writeConfig(CommandContext &context)
{
    if (isRefused(context, QStringLiteral("No configuration is written")) || !mayWrite(context)) {
        return Failed;
    }
    Report &report = context.report;
    IIngredientManager *manager = context.session->ingredientManager();
    const QString chosen = context.commandLine.outputFile;
    QFile copy;
    if (chosen.isEmpty() && !openMemoryFile(&copy)) {
        report.addFailure(
            QStringLiteral("No configuration is written: %1.").arg(qt_error_string()));
        return Failed;
    }
    const QString target = chosen.isEmpty() ? descriptorPath(copy) : absolutePath(chosen);
    if (!runOperation(context, target, [&] { return manager->saveConfigToFile(target); })) {
        return Failed;
    }
    if (chosen.isEmpty()) {
        const QByteArray config = copy.readAll();
        warnAboutConfig(context, target);
        report.printRaw(config);
        report.set("config", QString::fromLocal8Bit(config));
        return inputStatus(context);
    }
    warnAboutConfig(context, target);
    report.printUnlessQuiet(QStringLiteral("Configuration written to %1").arg(target));
    report.set("configFile", target);
    return inputStatus(context);
}

int writeProjectFile(CommandContext &context)
{
    if (isRefused(context, QStringLiteral("No project is written")) || !mayWrite(context)) {
        return Failed;
    }
    Report &report = context.report;
    const Project project = context.job->project();
    if (context.commandLine.outputFile.isEmpty()) {
        const QJsonObject object = projectToJson(project, QDir::currentPath());
        report.printRaw(QJsonDocument(object).toJson());
        report.set("project", object);
        return inputStatus(context);
    }
    const QString file = absolutePath(context.commandLine.outputFile);
    const QString problem = writeProject(file, project);
    if (!problem.isEmpty()) {
        report.addFailure(problem);
        return Failed;
    }
    report.printUnlessQuiet(QStringLiteral("Project written to %1").arg(file));
    report.set("projectFile", file);
    return inputStatus(context);
}

int verifyManifest(CommandContext &context)
{
    Report &report = context.report;
    const QString file = context.commandLine.arguments.first();
    Project manifest;
    QString problem = readProject(file, &manifest);
    if (problem.isEmpty() && !manifest.build) {
        problem = QStringLiteral("%1 is a project file; it records no build.").arg(file);
    }
    if (!problem.isEmpty()) {
        report.addFailure(problem);
        return Failed;
    }
    const QVector<RecordedFile> files = recordedFiles(manifest);
    QList<FileHash> hashes;
    if (!hashFiles(context, pathsOf(files), &hashes)) {
        report.addFailure(QStringLiteral("The comparison was interrupted."));
        return Failed;
    }
    const QVector<Problem> differences = differencesInFiles(files, hashes);
    showDifferences(context, differences);
    report.print(
        QStringLiteral("%1: %2 files compared, %3 different")
            .arg(file, QString::number(files.count()), QString::number(differences.count())));
    report.set("manifest", absolutePath(file));
    report.set("compared", files.count());
    report.set("differences", differences.count());
    return differences.isEmpty() ? Success : Failed;
}
