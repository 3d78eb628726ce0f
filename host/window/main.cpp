// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/pluginfiles.h"
#include "host/core/signalwatch.h"
#include "host/window/mainwindow.h"
#include "host/window/settings.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSessionManager>

#include <cstdio>

namespace {

const int usageError = 2;

/// What Qt gets of the command line: it would remove each option that it knows, documented or not,
/// with one dash or two. Both must exist as long as the application.
char programName[] = "loomwright-gui";
char *qtArguments[] = {programName, nullptr};
int qtArgumentCount = 1;

QStringList argumentsOf(int count, char **values)
{
    QStringList arguments;
    for (int i = 0; i < count; ++i) {
        arguments << QString::fromLocal8Bit(values[i]);
    }
    return arguments;
}

struct CommandLine {
    QString pluginFile;
    QStringList files;
    QString information; ///< To print instead of opening a window.
    QString problem;     ///< What is wrong with the command line.
};

/// The parser gets the program's name from the application; this one needs no display.
QString helpText(const QCommandLineParser &parser)
{
    const QCoreApplication application(qtArgumentCount, qtArguments);
    return parser.helpText();
}

CommandLine parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Checks firmware files and builds phone images from them, in a window.\n\n"
        "The plug-in is the one that --plugin names, else that of the environment variable\n"
        "LOOMWRIGHT_PLUGIN, else that of the settings, else the one in the program's directory or\n"
        "in the install directory."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Print this help."));
    const QCommandLineOption version(QStringLiteral("version"),
                                     QStringLiteral("Print the version."));
    const QCommandLineOption plugin(QStringLiteral("plugin"), QStringLiteral("Load this plug-in."),
                                    QStringLiteral("FILE"));
    parser.addOptions({help, version, plugin});
    parser.addPositionalArgument(
        QStringLiteral("path"),
        QStringLiteral("Projects and configurations to open, files and directories to map to "
                       "ingredients."),
        QStringLiteral("[PATH...]"));

    CommandLine commandLine;
    const bool parsed = parser.parse(arguments);
    if (!parsed) {
        commandLine.problem = parser.errorText();
    } else if (parser.isSet(help)) {
        commandLine.information = helpText(parser);
    } else if (parser.isSet(version)) {
        commandLine.information = QStringLiteral("%1 %2\n").arg(QLatin1String(programName),
                                                                QStringLiteral(LOOMWRIGHT_VERSION));
    } else if (parser.isSet(plugin) && parser.value(plugin).isEmpty()) {
        commandLine.problem = QStringLiteral("--plugin needs the name of a file.");
    }
    commandLine.pluginFile = parser.value(plugin);
    commandLine.files = parser.positionalArguments();
    return commandLine;
}

/// The plug-in that the user has chosen: for this run, else in the settings.
QString chosenPlugin(const CommandLine &commandLine)
{
    const bool chosenForThisRun
        = !commandLine.pluginFile.isEmpty() || qEnvironmentVariableIsSet("LOOMWRIGHT_PLUGIN");
    return chosenForThisRun ? commandLine.pluginFile : readSettings().pluginFile;
}

int runWindow(const CommandLine &commandLine, const SignalWatch &signalWatch)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(qtArgumentCount, qtArguments);
    QApplication::setOrganizationName(QStringLiteral("Loomwright"));
    QApplication::setApplicationName(QLatin1String(programName));
    QApplication::setApplicationDisplayName(QStringLiteral("Loomwright"));
    QApplication::setApplicationVersion(QStringLiteral(LOOMWRIGHT_VERSION));
    QApplication::setDesktopFileName(QLatin1String(programName));

    // Qt's own command has an option that is not ours.
    QObject::connect(&application, &QGuiApplication::saveStateRequest,
                     [](QSessionManager &session) {
                         session.setRestartCommand({QCoreApplication::applicationFilePath()});
                     });

    MainWindow window;
    signalWatch.whenReceived(&window, [&window] {
        // Does not ask, since there may be no user to answer.
        window.saveLayout();
        QCoreApplication::quit();
    });
    window.loadPlugin(pluginCandidates(chosenPlugin(commandLine)));
    if (commandLine.files.isEmpty()) {
        window.restoreLastProject();
    } else {
        window.open(commandLine.files);
    }
    window.show();
    // A nested event loop, such as that of a message box, may have noticed a signal.
    return signalWatch.hasReceived() ? 0 : QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const SignalWatch signalWatch;
    const CommandLine commandLine = parse(argumentsOf(argc, argv));
    if (!commandLine.problem.isEmpty()) {
        std::fprintf(stderr, "%s: %s Try --help.\n", programName, qPrintable(commandLine.problem));
        return usageError;
    }
    if (!commandLine.information.isEmpty()) {
        std::fputs(qPrintable(commandLine.information), stdout);
        return 0;
    }
    const int status = runWindow(commandLine, signalWatch);
    signalWatch.endLikeReceived();
    return status;
}
