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

/// Whether problems or the name of the output file forbid writing it; shows why. Rejected inputs
/// have been shown already.
bool isBlocked(CommandContext &context, const QString &conclusion)
{
    if (context.values->isBlocked(false)) {
        const Problems problems = context.values->problems();
        for (const Problem &problem : problems) {
            if (problem.severity == Severity::Fatal && problem.kind == ProblemKind::Finding) {
                context.report.printError(problem.ingredient.name + QLatin1String(": ")
                                          + problem.text);
            }
        }
        context.report.addFailure(conclusion + QLatin1String(": see the errors above."));
        return true;
    }
    const QString file = context.commandLine.outputFile;
    const QString problem = file.isEmpty() ? QString() : context.values->overwriteProblem(file);
    if (!problem.isEmpty()) {
        context.report.addFailure(problem);
    }
    return !problem.isEmpty() || context.isInterrupted();
}

/// Writes the output file with @p write, which returns why it failed.
int writeFile(CommandContext &context, const char *title, const char *name,
              const std::function<QString(const QString &)> &write)
{
    const QString file = resolvedTarget(context.commandLine.outputFile);
    QString problem = writeProblem(file);
    if (problem.isEmpty()) {
        problem = write(file);
    }
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
    return writeFile(context, "Configuration", "configFile",
                     [&](const QString &file) { return writeWhole(file, *configuration); });
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
    return writeFile(context, "Project", "projectFile",
                     [&](const QString &file) { return writeProject(file, project); });
}
