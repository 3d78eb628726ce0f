// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/configuration.h"
#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/stagedfile.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"

#include <QDir>
#include <QJsonDocument>

namespace {

/// Whether problems forbid writing the values; shows why. Rejected inputs have been shown already.
bool isBlocked(CommandContext &context, const QString &conclusion)
{
    if (!context.values->isBlocked(false)) {
        return context.isInterrupted();
    }
    const Problems problems = context.values->problems();
    for (const Problem &problem : problems) {
        if (problem.severity == Severity::Fatal && problem.kind == ProblemKind::Finding) {
            context.report.printError(problem.ingredient.name + QLatin1String(": ") + problem.text);
        }
    }
    context.report.addFailure(conclusion + QLatin1String(": see the errors above."));
    return true;
}

/// Reports that @p file was written, or @p problem if there is one.
int reportWritten(CommandContext &context, const char *title, const char *name, const QString &file,
                  const QString &problem)
{
    if (!problem.isEmpty()) {
        return context.report.addFailure(problem);
    }
    context.report.printUnlessQuiet(
        QStringLiteral("%1 written to %2").arg(QLatin1String(title), file));
    context.report.set(name, file);
    return inputStatus(context);
}

} // namespace

int writeConfig(CommandContext &context)
{
    if (isBlocked(context, QStringLiteral("No configuration is written"))) {
        return Failed;
    }
    Report &report = context.report;
    std::optional<QByteArray> configuration;
    const bool written = runOperation(context, QStringLiteral("The configuration"), [&] {
        configuration = configurationOf(*context.plugin);
        return configuration.has_value();
    });
    if (!written) {
        return Failed;
    }
    for (const QString &loss : lossesIn(*configuration, context.values->ingredients())) {
        report.addWarning(loss);
    }
    if (context.commandLine.outputFile.isEmpty()) {
        report.printRaw(*configuration);
        report.set("config", QString::fromLocal8Bit(*configuration));
        return inputStatus(context);
    }
    const QString file = resolvedTarget(context.commandLine.outputFile);
    QString problem = context.values->overwriteProblem(file);
    if (problem.isEmpty()) {
        problem = writeWhole(file, *configuration);
    }
    return reportWritten(context, "Configuration", "configFile", file, problem);
}

int writeProjectFile(CommandContext &context)
{
    if (isBlocked(context, QStringLiteral("No project is written"))) {
        return Failed;
    }
    Report &report = context.report;
    const Project project = context.values->project();
    if (context.commandLine.outputFile.isEmpty()) {
        const QJsonObject object = projectToJson(project, QDir::currentPath());
        report.printRaw(QJsonDocument(object).toJson());
        report.set("project", object);
        return inputStatus(context);
    }
    const QString file = resolvedTarget(context.commandLine.outputFile);
    QString problem = context.values->saveProblem(file);
    if (problem.isEmpty()) {
        problem = writeProject(file, project);
    }
    return reportWritten(context, "Project", "projectFile", file, problem);
}
