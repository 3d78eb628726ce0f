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

struct CommandLine {
    QString pluginFile;
    QStringList files;
    QString problem; ///< What is wrong with the command line.
};

/// Answers --help and --version at once, for which no display is needed.
CommandLine parse(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
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

    if (!parser.parse(QCoreApplication::arguments())) {
        return {{}, {}, parser.errorText()};
    }
    if (parser.isSet(help)) {
        parser.showHelp();
    }
    if (parser.isSet(version)) {
        parser.showVersion();
    }
    if (parser.isSet(plugin) && parser.value(plugin).isEmpty()) {
        return {{}, {}, QStringLiteral("--plugin needs the name of a file.")};
    }
    return {parser.value(plugin), parser.positionalArguments(), {}};
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
    QApplication::setApplicationDisplayName(QStringLiteral("Loomwright"));
    QApplication::setDesktopFileName(QLatin1String(programName));

    // Qt's own command has an option that is not ours.
    QObject::connect(&application, &QGuiApplication::saveStateRequest,
                     [](QSessionManager &session) {
                         session.setRestartCommand({QCoreApplication::applicationFilePath()});
                     });

    MainWindow window;
    signalWatch.whenReceived(&window, [&window] {
        // Does not ask, since there may be no user to answer.
        window.saveForNextSession();
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
    QCoreApplication::setApplicationName(QLatin1String(programName));
    QCoreApplication::setApplicationVersion(QStringLiteral(LOOMWRIGHT_VERSION));
    const CommandLine commandLine = parse(argc, argv);
    if (!commandLine.problem.isEmpty()) {
        std::fprintf(stderr, "%s: %s Try --help.\n", programName, qPrintable(commandLine.problem));
        return usageError;
    }
    const int status = runWindow(commandLine, signalWatch);
    signalWatch.endLikeReceived();
    return status;
}
