// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandline.h"

#include <QCommandLineParser>
#include <QHash>

#include <limits>

namespace {

const QString configOption = QStringLiteral("config");
const QString directoryOption = QStringLiteral("directory");
const QString fileOption = QStringLiteral("file");
const QString setOption = QStringLiteral("set");
const QString pluginOption = QStringLiteral("plugin");
const QString outputOption = QStringLiteral("output");
const QString noCheckOption = QStringLiteral("no-check");
const QString timeoutOption = QStringLiteral("timeout");
const QString jsonOption = QStringLiteral("json");
const QString quietOption = QStringLiteral("quiet");
const QString helpOption = QStringLiteral("help");
const QString versionOption = QStringLiteral("version");

const char description[] = R"(Drives the plug-in for unsigned Zorv images from the terminal.

Commands:
  info                  what the plug-in says of itself
  ingredients           groups, names, keys, values, and what each value must be
  check                 check all files: the table of checks and its summary
  validate FILE         validate a legacy XML data file
  config                write the stitcher configuration, to -o FILE or to standard output
  build                 check, then run tamblin-stitcher and wait for its end

Inputs are applied in this order: --config, --directory, --file, --set.
Relative paths are taken against the current folder.)";

const char exitStatuses[] = R"(
Exit status:
  0  all well
  1  a check, a validation, a mapping or the build failed
  2  the command line is wrong
  3  the plug-in could not be loaded

Messages of the plug-in go to standard output (status) and standard error (errors). With --json, and
for a configuration on standard output, status goes to standard error as well.

Environment:
  LOOMWRIGHT_PLUGIN  the plug-in, where --plugin does not name it; without both it is looked for
                     beside the program, then in the install folder
  NO_COLOR           when set, tables have no colour
)";

/// The options that only some commands take.
QHash<QString, QStringList> commandOptions()
{
    return {{QStringLiteral("info"), {}},
            {QStringLiteral("ingredients"), {}},
            {QStringLiteral("check"), {}},
            {QStringLiteral("validate"), {}},
            {QStringLiteral("config"), {outputOption}},
            {QStringLiteral("build"), {outputOption, noCheckOption, timeoutOption}}};
}

void setUp(QCommandLineParser *parser)
{
    parser->setApplicationDescription(QLatin1String(description));
    parser->addPositionalArgument(QStringLiteral("command"),
                                  QStringLiteral("One of the commands above."),
                                  QStringLiteral("COMMAND"));
    parser->addOptions({
        {pluginOption, QStringLiteral("Load this plug-in."), QStringLiteral("FILE")},
        {{QStringLiteral("c"), configOption},
         QStringLiteral("Load a stitcher configuration."),
         QStringLiteral("FILE")},
        {{QStringLiteral("d"), directoryOption},
         QStringLiteral("Fill ingredients from the files of a directory, by name."),
         QStringLiteral("DIR")},
        {{QStringLiteral("f"), fileOption},
         QStringLiteral("Fill the ingredient that the file's name fits (repeatable)."),
         QStringLiteral("FILE")},
        {{QStringLiteral("s"), setOption},
         QStringLiteral("Set one ingredient by its name or key (repeatable)."),
         QStringLiteral("NAME=VALUE")},
        {{QStringLiteral("o"), outputOption},
         QStringLiteral("config: the file to write; build: the image to write."),
         QStringLiteral("FILE")},
        {noCheckOption, QStringLiteral("build: stitch whatever the checks would say.")},
        {timeoutOption, QStringLiteral("build: stop a stitcher that runs longer than this."),
         QStringLiteral("SECONDS")},
        {jsonOption, QStringLiteral("Print one JSON document on standard output.")},
        {{QStringLiteral("q"), quietOption}, QStringLiteral("Drop status messages.")},
        {{QStringLiteral("h"), helpOption}, QStringLiteral("Show this help.")},
        {{QStringLiteral("v"), versionOption}, QStringLiteral("Show the program's version.")},
    });
}

QString repeatedOption(const QCommandLineParser &parser)
{
    for (const QString &option :
         {pluginOption, configOption, directoryOption, outputOption, timeoutOption}) {
        if (parser.values(option).count() > 1) {
            return option;
        }
    }
    return {};
}

/// The first option that names a file with an empty text, as an unset variable of a script does.
QString emptyOption(const QCommandLineParser &parser)
{
    for (const QString &option :
         {pluginOption, configOption, directoryOption, fileOption, outputOption}) {
        if (parser.values(option).contains(QString())) {
            return option;
        }
    }
    return {};
}

QString readSettings(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const QStringList settings = parser.values(setOption);
    for (const QString &setting : settings) {
        const int separator = setting.indexOf(QLatin1Char('='));
        if (separator < 1) {
            return QStringLiteral("--set wants NAME=VALUE, not \"%1\".").arg(setting);
        }
        commandLine->settings.append({setting.left(separator), setting.mid(separator + 1)});
    }
    return {};
}

QString readTimeout(const QCommandLineParser &parser, CommandLine *commandLine)
{
    if (!parser.isSet(timeoutOption)) {
        return {};
    }
    const QString text = parser.value(timeoutOption);
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    const int mostSeconds = std::numeric_limits<int>::max() / 1000;
    if (!isNumber || !(seconds >= 0.001 && seconds <= mostSeconds)) {
        return QStringLiteral("--timeout wants a number of seconds from 0.001 to %1, not \"%2\".")
            .arg(QString::number(mostSeconds), text);
    }
    commandLine->timeoutMs = int(seconds * 1000);
    return {};
}

QString readCommand(const QCommandLineParser &parser, CommandLine *commandLine)
{
    QStringList words = parser.positionalArguments();
    if (words.isEmpty()) {
        return QStringLiteral("No command is given.");
    }
    commandLine->command = words.takeFirst();
    const QHash<QString, QStringList> commands = commandOptions();
    if (!commands.contains(commandLine->command)) {
        return QStringLiteral("There is no command \"%1\".").arg(commandLine->command);
    }
    if (commandLine->command == QLatin1String("validate")) {
        if (words.isEmpty()) {
            return QStringLiteral("validate wants a FILE.");
        }
        commandLine->validateFile = words.takeFirst();
    }
    if (!words.isEmpty()) {
        return QStringLiteral("\"%1\" is one argument too many.").arg(words.first());
    }
    for (const QString &option : {outputOption, noCheckOption, timeoutOption}) {
        if (parser.isSet(option) && !commands.value(commandLine->command).contains(option)) {
            return QStringLiteral("%1 does not take --%2.").arg(commandLine->command, option);
        }
    }
    return {};
}

/// The first thing that is wrong, empty when nothing is.
QString readAll(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const QString repeated = repeatedOption(parser);
    if (!repeated.isEmpty()) {
        return QStringLiteral("--%1 is given more than once.").arg(repeated);
    }
    const QString empty = emptyOption(parser);
    if (!empty.isEmpty()) {
        return QStringLiteral("--%1 wants a name, not an empty text.").arg(empty);
    }
    for (const auto &reader : {readCommand, readSettings, readTimeout}) {
        QString problem = reader(parser, commandLine);
        if (!problem.isEmpty()) {
            return problem;
        }
    }
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(&parser);
    const bool isParsed = parser.parse(arguments);

    CommandLine commandLine;
    commandLine.pluginFile = parser.value(pluginOption);
    commandLine.configInput = parser.value(configOption);
    commandLine.directory = parser.value(directoryOption);
    commandLine.files = parser.values(fileOption);
    commandLine.outputFile = parser.value(outputOption);
    commandLine.isChecked = !parser.isSet(noCheckOption);
    commandLine.isJson = parser.isSet(jsonOption);
    commandLine.isQuiet = parser.isSet(quietOption);
    commandLine.isHelpWanted = parser.isSet(helpOption);
    commandLine.isVersionWanted = parser.isSet(versionOption);
    commandLine.problem
        = isParsed ? readAll(parser, &commandLine) : parser.errorText() + QLatin1Char('.');
    return commandLine;
}

QString helpText()
{
    QCommandLineParser parser;
    setUp(&parser);
    return parser.helpText() + QLatin1String(exitStatuses);
}
