// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/pluginlocator.h"
#include "host/window/mainwindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Loomwright"));
    QApplication::setApplicationName(QStringLiteral("loomwright-gui"));
    QApplication::setApplicationDisplayName(QStringLiteral("Loomwright"));
    QApplication::setApplicationVersion(QStringLiteral(LOOMWRIGHT_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("loomwright-gui"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/loomwright.svg")));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A window for the plug-in for unsigned Zorv images.\n\n"
        "The plug-in is named by --plugin, or by the environment variable LOOMWRIGHT_PLUGIN, or "
        "looked\n"
        "for beside the program and in the install folder; the window can also choose one."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption plugin(QStringLiteral("plugin"), QStringLiteral("Load this plug-in."),
                                    QStringLiteral("FILE"));
    parser.addOption(plugin);
    parser.addPositionalArgument(QStringLiteral("files"),
                                 QStringLiteral("Files and folders to map to ingredients."),
                                 QStringLiteral("[FILE OR FOLDER...]"));
    parser.process(application);

    MainWindow window;
    window.loadPlugin(pluginCandidates(parser.value(plugin)));
    window.open(parser.positionalArguments());
    window.show();
    return QApplication::exec();
}
