// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/pluginlocator.h"
#include "host/core/pluginsession.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"

#include <QApplication>
#include <QLoggingCategory>

#include <vector>

namespace {

QStringList argumentsOf(int count, char **words)
{
    QStringList arguments;
    for (int i = 0; i < count; ++i) {
        arguments.append(QString::fromLocal8Bit(words[i]));
    }
    return arguments;
}

int runWithPlugin(const CommandLine &commandLine)
{
    Report report(commandLine.isJson ? Report::Format::Json : Report::Format::Text,
                  commandLine.isQuiet);
    report.set(QStringLiteral("command"), commandLine.command);
    if (!commandLine.problem.isEmpty()) {
        report.addProblem(commandLine.problem + QLatin1String(" Try --help."));
        return report.finish(UsageError);
    }

    if (commandLine.command == QLatin1String("config") && commandLine.outputFile.isEmpty()) {
        report.keepOutputClean();
    }
    PluginSession session;
    QObject::connect(session.statusManager(), &StatusManager::statusMessage, &session,
                     [&report](const QString &message) { report.addStatus(message); });
    QObject::connect(session.statusManager(), &StatusManager::errorMessage, &session,
                     [&report](const QString &message) { report.addError(message); });
    if (!session.load(pluginCandidates(commandLine.pluginFile))) {
        report.addProblem(session.problem());
        return report.finish(PluginProblem);
    }
    return report.finish(runCommand(commandLine, &session, &report));
}

} // namespace

int main(int argc, char **argv)
{
    // Remarks of Qt on its surroundings do not belong among the messages of the plug-in; the variable
    // QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));

    // The plug-in creates a widget, which no display is needed for as long as it stays hidden. Qt
    // gets none of the user's arguments, since it would take some of them for its own.
    QByteArray program(argv[0]);
    QByteArray platformOption("-platform");
    QByteArray platform("offscreen");
    std::vector<char *> qtArguments{program.data()};
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qtArguments.push_back(platformOption.data());
        qtArguments.push_back(platform.data());
    }
    int qtArgumentCount = int(qtArguments.size());
    qtArguments.push_back(nullptr);
    const QApplication application(qtArgumentCount, qtArguments.data());

    const CommandLine commandLine = parseCommandLine(argumentsOf(argc, argv));
    if (commandLine.isHelpWanted || commandLine.isVersionWanted) {
        Report report(Report::Format::Text, false);
        report.print(commandLine.isHelpWanted ? helpText()
                                              : QStringLiteral("loomwright " LOOMWRIGHT_VERSION));
        return report.finish(AllWell);
    }
    return runWithPlugin(commandLine);
}
