// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/plugin.h"
#include "host/core/pluginfiles.h"
#include "host/core/signalwatch.h"
#include "host/core/temporaryvariable.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/commandtable.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/help.h"
#include "host/terminal/report.h"
#include "plugin/iloomwrightplugin.h"

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

/// The program's arguments. One that is not valid in the encoding of the locale would name another
/// file than the user means; then @p problem says so.
QStringList argumentsOf(int count, char **words, QString *problem)
{
    QStringList arguments;
    for (int i = 0; i < count; ++i) {
        arguments.append(QString::fromLocal8Bit(words[i]));
        if (problem->isEmpty() && arguments.last().toLocal8Bit() != words[i]) {
            *problem = QStringLiteral("\"%1\" is not valid in the encoding of the locale.")
                           .arg(arguments.last());
        }
    }
    return arguments;
}

/// Shows only the message with which Qt aborts.
void showFatal(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "loomwright: %s\n", qPrintable(message));
    }
}

/// The plug-in creates a widget, but never shows it, so no display is needed. The user's settings
/// for programs with windows could make Qt load plug-ins or abort; the stitcher gets them back. Qt
/// gets none of the user's arguments, since it would remove those that it knows.
std::unique_ptr<QApplication> createApplication(int *argumentCount, char **arguments)
{
    const TemporaryVariable platform("QT_QPA_PLATFORM", "offscreen");
    const TemporaryVariable theme("QT_QPA_PLATFORMTHEME", {});
    const TemporaryVariable inputMethod("QT_IM_MODULE", {});
    const TemporaryVariable generic("QT_QPA_GENERIC_PLUGINS", {});
    const TemporaryVariable style("QT_STYLE_OVERRIDE", {});
    // Without a runtime directory, Qt creates one in the temporary directory to look for a
    // display's socket, and leaves it behind. This prevents it.
    const TemporaryVariable temporaryDirectory("TMPDIR", "/dev/null");
    qInstallMessageHandler(showFatal);
    auto application = std::make_unique<QApplication>(*argumentCount, arguments);
    qInstallMessageHandler(nullptr);
    return application;
}

/// Opens /dev/null in place of closed standard descriptors. Otherwise the next file to be opened
/// would get such a number, and output would be written into it.
void occupyStandardDescriptors()
{
    for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1) {
            // open() returns the lowest free number. Writing to it fails, as it should.
            open("/dev/null", O_RDONLY); // NOLINT(cppcoreguidelines-pro-type-vararg)
        }
    }
}

/// Loads the plug-in for the target that the user names. Returns why that failed.
QString loadTarget(const QString &target, Plugin *plugin)
{
    QStringList targets;
    for (const QString &file : installedPlugins(QString())) {
        Plugin candidate;
        if (!candidate.load({file})) {
            continue;
        }
        const QString name = candidate.root()->getTargetName();
        if (name == target) {
            return plugin->load({file}) ? QString() : plugin->problem();
        }
        targets.append(QLatin1Char('"') + name + QLatin1Char('"'));
    }
    targets.removeDuplicates();
    return targets.isEmpty() ? QStringLiteral("No plug-in found.")
                             : QStringLiteral("No plug-in has the target \"%1\". Targets: %2.")
                                   .arg(target, targets.join(QStringLiteral(", ")));
}

/// Loads the plug-in that the command line names. Returns why that failed.
QString loadPlugin(const CommandLine &commandLine, Plugin *plugin)
{
    if (!commandLine.target.isEmpty()) {
        return loadTarget(commandLine.target, plugin);
    }
    return plugin->load(pluginCandidates(commandLine.pluginFile)) ? QString() : plugin->problem();
}

int runWithPlugin(CommandContext &context)
{
    const CommandInfo &command = *context.commandLine.command;
    Report &report = context.report;
    Plugin plugin;
    QObject::connect(&plugin, &Plugin::statusMessage,
                     [&report](const QString &message) { report.addStatus(message); });
    QObject::connect(&plugin, &Plugin::errorMessage,
                     [&report](const QString &message) { report.addError(message); });
    const QString problem = loadPlugin(context.commandLine, &plugin);
    if (!problem.isEmpty()) {
        report.addFailure(problem);
        return PluginProblem;
    }
    Values values(&plugin);
    context.plugin = &plugin;
    context.values = &values;
    if (command.needs == CommandNeeds::Inputs) {
        applyInputs(context);
    }
    int status = Failed;
    if (plugin.isLoaded() && !context.isInterrupted()) {
        status = command.function(context);
    }
    if (!plugin.isLoaded()) {
        report.addFailure(plugin.problem());
        return PluginProblem;
    }
    if (command.needs == CommandNeeds::Inputs) {
        report.addProblems(values.problems());
    }
    return status;
}

int runCommand(const CommandLine &commandLine, const SignalWatch &signalWatch, Report *report)
{
    report->set("command",
                commandLine.command ? QLatin1String(commandLine.command->name) : QLatin1String());
    if (!commandLine.problem.isEmpty()) {
        report->addFailure(commandLine.problem);
        report->printHint(commandLine.command ? QStringLiteral("Try \"loomwright help %1\".")
                                                    .arg(QLatin1String(commandLine.command->name))
                                              : QStringLiteral("Try \"loomwright --help\"."));
        return UsageError;
    }
    if (QDir::currentPath().isEmpty()) {
        // Qt would resolve relative paths against the root directory.
        return report->addFailure(QStringLiteral("The current directory no longer exists."));
    }
    CommandContext context{commandLine, *report, signalWatch};
    if (context.isInterrupted()) {
        return Failed;
    }
    return commandLine.command->needs == CommandNeeds::Nothing
        ? commandLine.command->function(context)
        : runWithPlugin(context);
}

/// The output of --version, --help and help; empty for any other command.
QString informationFor(const CommandLine &commandLine)
{
    if (commandLine.isVersionWanted) {
        return QStringLiteral("loomwright " LOOMWRIGHT_VERSION);
    }
    const CommandInfo *command = commandLine.command;
    const QStringList arguments = commandLine.arguments;
    const bool isHelpCommand = command && !command->function && commandLine.problem.isEmpty();
    if (isHelpCommand) {
        return arguments.isEmpty() ? helpText() : helpText(*findCommand(arguments.first()));
    }
    if (!commandLine.isHelpWanted || (!command && !arguments.isEmpty())) {
        return {};
    }
    return command ? helpText(*command) : helpText();
}

Report::Verbosity verbosityOf(const CommandLine &commandLine)
{
    if (commandLine.isQuiet) {
        return Report::Verbosity::Quiet;
    }
    return commandLine.isVerbose ? Report::Verbosity::Verbose : Report::Verbosity::Normal;
}

int runProgram(int argumentCount, char **arguments, const SignalWatch &signalWatch)
{
    // Hides Qt's warnings about its environment, which do not belong among the plug-in's messages;
    // QT_LOGGING_RULES shows them again.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QString encodingProblem;
    CommandLine commandLine
        = parseCommandLine(argumentsOf(argumentCount, arguments, &encodingProblem));
    if (commandLine.problem.isEmpty()) {
        commandLine.problem = encodingProblem;
    }
    const QString information = informationFor(commandLine);
    const bool isJson = commandLine.isJson && information.isEmpty();
    Report report(isJson ? Report::Format::Json : Report::Format::Text, verbosityOf(commandLine),
                  signalWatch);
    int status = Success;
    if (!information.isEmpty()) {
        report.print(information);
    } else {
        int qtArgumentCount = 1;
        char *qtArguments[] = {arguments[0], nullptr};
        const std::unique_ptr<QApplication> application
            = createApplication(&qtArgumentCount, qtArguments);
        status = runCommand(commandLine, signalWatch, &report);
    }
    return report.finish(status);
}

} // namespace

int main(int argc, char **argv)
{
    occupyStandardDescriptors();
    const SignalWatch signalWatch;
    const int status = runProgram(argc, argv, signalWatch);
    signalWatch.endLikeReceived();
    return status;
}
