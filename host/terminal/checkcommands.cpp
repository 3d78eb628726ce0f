// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/findings.h"
#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/stitcher.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"

#include <algorithm>

namespace {

QJsonValue sizeValue(qint64 size)
{
    return size >= 0 ? QJsonValue(size) : QJsonValue();
}

/// A check as a row of JSON.
Record recordOf(const FileCheck &check)
{
    return {{nullptr, "passed", check.passed},
            {nullptr, "name", check.ingredient.id.name},
            {nullptr, "details", check.details},
            {nullptr, "file", check.ingredient.text()},
            {nullptr, "key", check.ingredient.id.key},
            {nullptr, "kind", kindName(kindOf(check.ingredient.value))},
            {nullptr, "expectedSize", sizeValue(check.expectedSize)},
            {nullptr, "actualSize", sizeValue(check.actualSize)}};
}

Record passedRow(const FileCheck &check)
{
    return {{"Result", nullptr, "pass", {}, Tone::Good},
            {"Ingredient", nullptr, check.ingredient.id.name},
            {"Details", nullptr, check.details},
            {"File", nullptr, check.ingredient.text()}};
}

Record problemRow(const Problem &problem)
{
    const bool warns = problem.severity == Severity::Warning;
    const bool compares = !problem.required.isEmpty() && !problem.actual.isEmpty();
    const QString comparison = compares
        ? QStringLiteral(" (required: %1, actual: %2)").arg(problem.required, problem.actual)
        : QString();
    return {{"Result", nullptr, warns ? "warn" : "FAIL", {}, warns ? Tone::Plain : Tone::Bad},
            {"Ingredient", nullptr, problem.ingredient.name},
            {"Details", nullptr, problem.text + comparison},
            {"File", nullptr, problem.files.join(QStringLiteral(", "))}};
}

QString counted(qint64 count, const char *noun)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(noun),
                                         QLatin1String(count == 1 ? "" : "s"));
}

/// "2 errors, 1 warning; 14 checks: 12 passed, 2 failed"
QString summaryText(const CheckResultSummary &summary, const Problems &problems)
{
    const auto warnings
        = std::count_if(problems.begin(), problems.end(), [](const Problem &problem) {
              return problem.severity == Severity::Warning;
          });
    QStringList counts;
    if (problems.count() > warnings) {
        counts.append(counted(problems.count() - warnings, "error"));
    }
    if (warnings > 0) {
        counts.append(counted(warnings, "warning"));
    }
    const QString checks = QStringLiteral("%1: %2 passed, %3 failed")
                               .arg(counted(summary.checkCount, "check"))
                               .arg(summary.passCount)
                               .arg(summary.failCount);
    return counts.isEmpty() ? checks
                            : counts.join(QStringLiteral(", ")) + QStringLiteral("; ") + checks;
}

bool validate(CommandContext &context, const QString &file)
{
    QString path = absolutePath(file);
    if (file == QLatin1String(standardInputName)) {
        const QString problem = copyStandardInput(context, &path);
        if (!problem.isEmpty()) {
            context.report.addFailure(problem);
            return false;
        }
    }
    const bool valid = runOperation(
        context, file, [&] { return context.plugin->ingredientManager()->validateXmlFile(path); });
    const QString position = valid ? QString() : xmlProblem(path);
    if (!position.isEmpty()) {
        context.report.printError(QStringLiteral("%1: %2").arg(file, position));
    }
    return valid;
}

} // namespace

void reportChecks(CommandContext &context, bool listed)
{
    Report &report = context.report;
    std::vector<Record> rows;
    std::vector<Record> shownRows;
    const QVector<FileCheck> checks = context.values->checks();
    for (const FileCheck &check : checks) {
        rows.push_back(recordOf(check));
        if (check.passed && report.isVerbose()) {
            shownRows.push_back(passedRow(check));
        }
    }
    const Problems problems = context.values->problems();
    for (const Problem &problem : problems) {
        shownRows.push_back(problemRow(problem));
    }
    const CheckResultSummary summary
        = context.plugin->executionManager()->getIngredientCheckSummary();
    if (listed) {
        report.printTable(shownRows);
        report.print(summaryText(summary, problems));
    }
    report.setList("checks", rows);
    report.set("summary",
               QJsonObject{{QStringLiteral("checks"), summary.checkCount},
                           {QStringLiteral("passed"), summary.passCount},
                           {QStringLiteral("failed"), summary.failCount}});
}

int runCheck(CommandContext &context)
{
    const QString stitcher = context.commandLine.stitcherFile;
    const QString problem = stitcher.isEmpty() ? QString() : locateStitcher(stitcher).problem;
    if (!problem.isEmpty()) {
        context.values->reject(problem);
    }
    context.values->check();
    reportChecks(context);
    return context.values->isBlocked(true) ? Failed : Success;
}

int validateFiles(CommandContext &context)
{
    Report &report = context.report;
    int status = Success;
    std::vector<Record> rows;
    for (const QString &file : context.commandLine.arguments) {
        // The plug-in verifies the sections of earlier files again, so each file gets a new root
        // object.
        if (!context.plugin->renew()) {
            report.addFailure(context.plugin->problem());
            return PluginProblem;
        }
        report.setSource(Report::Source::Validation);
        const bool valid = validate(context, file);
        report.setSource(Report::Source::Plugin);
        if (context.isInterrupted()) {
            return Failed;
        }
        const QString verdict = file + QLatin1String(valid ? ": valid" : ": not valid");
        report.print(verdict, valid ? Tone::Good : Tone::Bad);
        rows.push_back({{nullptr, "file", file}, {nullptr, "valid", valid}});
        status = valid ? status : Failed;
    }
    report.setList("files", rows);
    return status;
}
