// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/signalwatch.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/commandtable.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/manifestcheck.h"
#include "host/terminal/report.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {

const int copyBufferSize = 1 << 16;

/// False when the project was rejected.
bool loadProject(CommandContext &context, Project *project)
{
    const QString file = context.commandLine.projectFile;
    const QString problem = readProject(file, project);
    return problem.isEmpty() ? context.values->loadProject(*project, file)
                             : context.values->reject(problem);
}

void loadConfiguration(CommandContext &context)
{
    const QString file = context.commandLine.configInput;
    if (file != QLatin1String(standardInputName)) {
        context.values->loadConfiguration(file);
        return;
    }
    QString copy;
    const QString problem = copyStandardInput(context, &copy);
    if (problem.isEmpty()) {
        context.values->loadConfiguration(copy, QStringLiteral("standard input"));
    } else {
        context.values->reject(problem);
    }
}

/// A build server has no documents directory, where the plug-in would put the image.
void useCurrentDirectory(Values &values)
{
    if (!values.image().isEmpty()) {
        values.setImage(QFileInfo(values.image()).fileName());
    }
}

/// Shows what became of the inputs; the plug-in's own errors were shown as they arrived.
void printRejections(CommandContext &context)
{
    const Problems problems = context.values->problems();
    for (const Problem &problem : problems) {
        const QString files = problem.files.join(QStringLiteral(", "));
        if (problem.kind == ProblemKind::Difference) {
            context.report.printError(
                QStringLiteral("%1: %2: %3").arg(problem.ingredient.name, problem.text, files));
        } else if (problem.kind == ProblemKind::Input && problem.severity == Severity::Warning) {
            context.report.printWarning(
                files.isEmpty() ? problem.text : QStringLiteral("%1: %2").arg(problem.text, files));
        } else if (problem.kind == ProblemKind::Input) {
            context.report.printError(problem.text);
        }
    }
}

/// Appends everything that is read from @p descriptor to @p file. Returns an error number; 0 on
/// success.
int copyContent(const SignalWatch &signalWatch, int descriptor, QFile *file)
{
    QByteArray buffer(copyBufferSize, Qt::Uninitialized);
    while (signalWatch.waitFor(descriptor, POLLIN)) {
        const ssize_t count = read(descriptor, buffer.data(), size_t(buffer.size()));
        if (count == 0) {
            return 0;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            return errno;
        }
        if (count > 0 && file->write(buffer.constData(), count) != count) {
            return ENOSPC;
        }
    }
    return EINTR;
}

} // namespace

bool CommandContext::isInterrupted() const
{
    return signalWatch.hasReceived();
}

void applyInputs(CommandContext &context)
{
    const CommandLine &commandLine = context.commandLine;
    Values &values = *context.values;
    const auto goesOn = [&] { return context.plugin->isLoaded() && !context.isInterrupted(); };
    const auto isGiven = [&](const QString &input) { return !input.isEmpty() && goesOn(); };
    Project project;
    useCurrentDirectory(values);
    const bool hasProject = isGiven(commandLine.projectFile) && loadProject(context, &project);
    if (isGiven(commandLine.configInput)) {
        loadConfiguration(context);
    }
    if (isGiven(commandLine.directory)) {
        values.fillFromDirectory(commandLine.directory);
    }
    for (const QString &file : commandLine.files) {
        if (goesOn()) {
            values.addFile(file);
        }
    }
    for (const QString &setting : commandLine.settings) {
        if (goesOn()) {
            values.setValue(setting.section(QLatin1Char('='), 0, 0),
                            setting.section(QLatin1Char('='), 1));
        }
    }
    if (isGiven(commandLine.imageFile)) {
        values.setImage(commandLine.imageFile);
    }
    if (commandLine.isLocked && hasProject && goesOn()) {
        checkLock(context, project);
    }
    if (context.plugin->isLoaded() && !commandLine.command->listsProblems) {
        printRejections(context);
    }
}

int inputStatus(const CommandContext &context)
{
    const Problems problems = context.values->problems();
    const bool wrong = std::any_of(problems.begin(), problems.end(), [](const Problem &problem) {
        return problem.kind < ProblemKind::Finding && problem.severity != Severity::Warning;
    });
    return wrong ? Failed : Success;
}

bool runOperation(CommandContext &context, const QString &file,
                  const std::function<bool()> &operation)
{
    QStringList errors;
    const auto connection
        = QObject::connect(context.plugin, &Plugin::errorMessage,
                           [&errors](const QString &message) { errors.append(message.trimmed()); });
    const bool succeeded = operation();
    QObject::disconnect(connection);
    if (succeeded) {
        return true;
    }
    errors.removeAll(QString());
    if (errors.isEmpty()) {
        errors.append(QStringLiteral("The plug-in failed without an error message"));
        context.report.printHint(file + QLatin1String(": ") + errors.last());
    }
    for (const QString &error : qAsConst(errors)) {
        context.report.addProblems({{ProblemKind::Message, Severity::Error, error, {}, {file}}});
    }
    return false;
}

QString copyStandardInput(const CommandContext &context, QString *path)
{
    QFile copy;
    if (!openMemoryFile(&copy)) {
        return QStringLiteral("Standard input cannot be read: %1.").arg(qt_error_string());
    }
    const int error = copyContent(context.signalWatch, STDIN_FILENO, &copy);
    if (error != 0) {
        return QStringLiteral("Standard input cannot be read: %1.").arg(qt_error_string(error));
    }
    if (!copy.flush() || dup2(copy.handle(), STDIN_FILENO) < 0) {
        return QStringLiteral("Standard input cannot be stored: %1.").arg(copy.errorString());
    }
    *path = QStringLiteral("/dev/stdin");
    return {};
}
