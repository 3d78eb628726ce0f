// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/imagejob.h"
#include "host/core/pluginsession.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"

namespace {

QString resultText(const Report &report, bool passed)
{
    return passed ? report.good(QStringLiteral("pass")) : report.bad(QStringLiteral("FAIL"));
}

QString comparison(const QString &text, const QString &required, const QString &actual)
{
    return required.isEmpty() || actual.isEmpty()
        ? text
        : QStringLiteral("%1 (has %2, must have %3)").arg(text, actual, required);
}

QJsonValue sizeValue(qint64 size)
{
    return size >= 0 ? QJsonValue(size) : QJsonValue();
}

Record recordOf(const FileCheck &check, const Report &report)
{
    const bool differs = !check.passed && check.expectedSize >= 0 && check.actualSize >= 0;
    return {{"Result", "passed", check.passed, resultText(report, check.passed)},
            {"Ingredient", "name", check.ingredient.name},
            {"Details", "details", check.details,
             differs ? comparison(check.details, sizeText(check.expectedSize),
                                  sizeText(check.actualSize))
                     : check.details},
            {"File", "file", check.file},
            {nullptr, "key", check.ingredient.key},
            {nullptr, "kind", kindName(kindOf(check.ingredient.value))},
            {nullptr, "expectedSize", sizeValue(check.expectedSize)},
            {nullptr, "actualSize", sizeValue(check.actualSize)}};
}

Record recordOf(const Problem &problem, int moreCount, const Report &report)
{
    const QString more
        = moreCount == 0 ? QString() : QStringLiteral(" (and %1 more)").arg(moreCount);
    return {{"Result", nullptr, {}, resultText(report, false)},
            {"Ingredient", nullptr, problem.ingredient},
            {"Details", nullptr, comparison(problem.text, problem.required, problem.actual) + more},
            {"File", nullptr, problem.file}};
}

/// The problems other than failed checks. Several messages about one ingredient share a row, since
/// a data file may cause thousands.
std::vector<Record> problemRows(const QVector<Problem> &problems, const Report &report)
{
    std::vector<Record> rows;
    for (int i = 0; i < problems.count(); ++i) {
        const Problem &problem = problems.at(i);
        if (problem.kind == ProblemKind::Check) {
            continue;
        }
        int last = i;
        while (problem.kind == ProblemKind::Message && last + 1 < problems.count()
               && problems.at(last + 1).kind == problem.kind
               && problems.at(last + 1).ingredient == problem.ingredient) {
            ++last;
        }
        rows.push_back(recordOf(problem, last - i, report));
        i = last;
    }
    return rows;
}

QString counted(int count, const QString &singular, const QString &plural)
{
    return QString::number(count) + QLatin1Char(' ') + (count == 1 ? singular : plural);
}

/// How many checks passed and failed, and how many problems are no failed checks.
QString summaryText(const CheckResultSummary &summary, int otherCount)
{
    QString text = counted(summary.checkCount, QStringLiteral("check"), QStringLiteral("checks"))
        + QStringLiteral(": %1 passed, %2 failed").arg(summary.passCount).arg(summary.failCount);
    if (otherCount > 0) {
        text += QLatin1String("; ")
            + counted(otherCount, QStringLiteral("other problem"),
                      QStringLiteral("other problems"));
    }
    return text;
}

bool validate(CommandContext &context, const QString &file)
{
    QString path = file;
    if (file == QLatin1String(standardInputName)) {
        const QString problem = copyStandardInput(context, &path);
        if (!problem.isEmpty()) {
            context.report.addFailure(problem);
            return false;
        }
    }
    return runOperation(
        context, file, [&] { return context.session->ingredientManager()->validateXmlFile(path); });
}

} // namespace

void reportChecks(CommandContext &context, bool listed)
{
    Report &report = context.report;
    context.job->check();

    std::vector<Record> rows;
    std::vector<Record> shownRows;
    const QVector<FileCheck> checks = context.job->checks();
    for (const FileCheck &check : checks) {
        rows.push_back(recordOf(check, report));
        if (!check.passed || report.isVerbose()) {
            shownRows.push_back(rows.back());
        }
    }
    const std::vector<Record> otherRows = problemRows(context.job->problems(), report);
    shownRows.insert(shownRows.end(), otherRows.begin(), otherRows.end());

    const CheckResultSummary summary
        = context.session->executionManager()->getIngredientCheckSummary();
    if (listed) {
        report.printTable(shownRows);
        report.print(summaryText(summary, int(otherRows.size())));
    }
    report.setList("checks", rows);
    report.set("summary",
               QJsonObject{{QStringLiteral("checks"), summary.checkCount},
                           {QStringLiteral("passed"), summary.passCount},
                           {QStringLiteral("failed"), summary.failCount}});
}

int runCheck(CommandContext &context)
{
    reportChecks(context);
    return context.job->isBlocked(true) ? Failed : Success;
}

int validateFiles(CommandContext &context)
{
    Report &report = context.report;
    int status = inputStatus(context);
    noteProblems(context);

    std::vector<Record> rows;
    for (const QString &file : context.commandLine.arguments) {
        if (context.isInterrupted()) {
            return Failed;
        }
        // The plug-in verifies the sections of earlier files again, so each file gets a new root
        // object.
        if (!context.session->reload()) {
            report.addFailure(context.session->problem());
            return PluginProblem;
        }
        report.setSource(Report::Source::Validation);
        const bool valid = validate(context, file);
        report.setSource(Report::Source::Plugin);
        const QString verdict = file + QLatin1String(valid ? ": valid" : ": not valid");
        report.print(valid ? report.good(verdict) : report.bad(verdict));
        rows.push_back({{nullptr, "file", file}, {nullptr, "valid", valid}});
        status = valid ? status : Failed;
    }
    report.setList("files", rows);
    return status;
}
