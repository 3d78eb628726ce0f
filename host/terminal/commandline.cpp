// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandline.h"

#include "host/terminal/commandtable.h"
#include "host/terminal/suggestion.h"

#include <QCommandLineParser>

#include <limits>

namespace {

const int millisecondsPerSecond = 1000;

QString dashed(const char *name)
{
    return QLatin1String("--") + QLatin1String(name);
}

/// All options of all commands, each name once.
std::vector<OptionInfo> allOptions()
{
    std::vector<OptionInfo> options = inputOptions();
    options.insert(options.end(), generalOptions().begin(), generalOptions().end());
    QStringList names;
    for (const CommandInfo &command : commandTable()) {
        for (const OptionInfo &option : command.options) {
            if (!names.contains(QLatin1String(option.name))) {
                names.append(QLatin1String(option.name));
                options.push_back(option);
            }
        }
    }
    return options;
}

QCommandLineOption parserOption(const OptionInfo &option)
{
    QStringList names(QLatin1String(option.name));
    if (option.shortName) {
        names.prepend(QLatin1String(option.shortName));
    }
    return {names, QString(), QLatin1String(option.value ? option.value : "")};
}

/// The option named @p name as @p command takes it; null when it does not.
const OptionInfo *findOption(const CommandInfo &command, const char *name)
{
    const bool takesInputs = command.needs == CommandNeeds::Inputs;
    for (const std::vector<OptionInfo> *options :
         {&command.options, &generalOptions(), takesInputs ? &inputOptions() : nullptr}) {
        if (!options) {
            continue;
        }
        for (const OptionInfo &option : *options) {
            if (qstrcmp(option.name, name) == 0) {
                return &option;
            }
        }
    }
    return nullptr;
}

void store(const QStringList &values, const OptionMember &member, CommandLine *commandLine)
{
    if (const auto flag = std::get_if<bool CommandLine::*>(&member)) {
        commandLine->*(*flag) = true;
    } else if (const auto text = std::get_if<QString CommandLine::*>(&member)) {
        commandLine->*(*text) = values.last();
    } else {
        commandLine->*std::get<QStringList CommandLine::*>(member) = values;
    }
}

QString suggestionText(const QString &word)
{
    return word.isEmpty() ? QString() : QStringLiteral(" Did you mean \"%1\"?").arg(word);
}

QString unknownOption(const QCommandLineParser &parser)
{
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty()) {
        return parser.errorText(); // Ends with a full stop.
    }
    const bool isShort = unknown.first().length() == 1;
    QStringList names;
    for (const OptionInfo &option : allOptions()) {
        names.append(dashed(option.name));
    }
    const QString name = QLatin1String(isShort ? "-" : "--") + unknown.first();
    return QStringLiteral("Unknown option \"%1\".%2")
        .arg(name, isShort ? QString() : suggestionText(closestTo(name, names)));
}

QString unknownCommand(const QString &name)
{
    QString meant = closestTo(name, commandNames());
    for (const OptionInfo &option : generalOptions()) {
        meant = name == QLatin1String(option.name) ? dashed(option.name) : meant;
    }
    return QStringLiteral("Unknown command \"%1\".%2").arg(name, suggestionText(meant));
}

QString readCommand(const QCommandLineParser &parser, CommandLine *commandLine)
{
    commandLine->arguments = parser.positionalArguments();
    if (commandLine->arguments.isEmpty()) {
        return QStringLiteral("No command is given.");
    }
    commandLine->command = findCommand(commandLine->arguments.first());
    if (!commandLine->command) {
        return unknownCommand(commandLine->arguments.first());
    }
    commandLine->arguments.removeFirst();
    return {};
}

QString readArguments(const QCommandLineParser &, CommandLine *commandLine)
{
    const CommandInfo &command = *commandLine->command;
    const int count = commandLine->arguments.count();
    if (count < command.minArguments) {
        return QStringLiteral("%1 needs an argument: %2")
            .arg(QLatin1String(command.name), QLatin1String(command.arguments));
    }
    const bool isHelp = !command.function;
    if (isHelp && count == 1 && !findCommand(commandLine->arguments.first())) {
        return unknownCommand(commandLine->arguments.first());
    }
    return count > command.maxArguments ? QStringLiteral("Unexpected argument \"%1\".")
                                              .arg(commandLine->arguments.at(command.maxArguments))
                                        : QString();
}

/// Why @p option cannot have these values; empty when it can.
QString valueProblem(const OptionInfo &option, const QStringList &values)
{
    if (option.value && !option.isRepeatable() && values.count() > 1) {
        return QStringLiteral("%1 is given more than once.").arg(dashed(option.name));
    }
    // For example from an unset variable in a script.
    return !option.mayBeEmpty && values.contains(QString())
        ? QStringLiteral("%1 needs a value that is not empty.").arg(dashed(option.name))
        : QString();
}

/// Stores the values of the options that the command takes.
QString readOptions(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const CommandInfo &command = *commandLine->command;
    for (const OptionInfo &each : allOptions()) {
        if (!parser.isSet(QLatin1String(each.name))) {
            continue;
        }
        const OptionInfo *option = findOption(command, each.name);
        if (!option) {
            return QStringLiteral("%1 does not take %2.")
                .arg(QLatin1String(command.name), dashed(each.name));
        }
        const QStringList values = parser.values(QLatin1String(each.name));
        const QString problem = valueProblem(*option, values);
        if (!problem.isEmpty()) {
            return problem;
        }
        store(values, option->member, commandLine);
    }
    return {};
}

QString checkCombinations(const QCommandLineParser &parser, CommandLine *commandLine)
{
    if (!commandLine->pluginFile.isEmpty() && !commandLine->target.isEmpty()) {
        return QStringLiteral("--plugin and --target cannot be combined.");
    }
    if (commandLine->isQuiet && commandLine->isVerbose) {
        return QStringLiteral("--quiet and --verbose cannot be combined.");
    }
    if (commandLine->areNamesWanted && commandLine->isJson) {
        return QStringLiteral("--names and --json cannot be combined.");
    }
    if (commandLine->isLocked && commandLine->projectFile.isEmpty()) {
        return QStringLiteral("--locked needs --project.");
    }
    if (commandLine->isDryRun && !commandLine->manifestFile.isEmpty()) {
        return QStringLiteral("--dry-run and --manifest cannot be combined.");
    }
    const bool isImageNamedTwice = parser.isSet(QStringLiteral("image"))
        && parser.isSet(QStringLiteral("output")) && commandLine->outputFile.isEmpty();
    if (isImageNamedTwice) {
        return QStringLiteral("--output and --image are the same here; give one of them.");
    }
    const int standardInputs = commandLine->arguments.count(QLatin1String(standardInputName))
        + (commandLine->configInput == QLatin1String(standardInputName) ? 1 : 0);
    return standardInputs > 1 ? QStringLiteral("Standard input can be read only once.") : QString();
}

QString readSettings(const QCommandLineParser &, CommandLine *commandLine)
{
    for (const QString &setting : qAsConst(commandLine->settingTexts)) {
        const int separator = setting.indexOf(QLatin1Char('='));
        if (separator < 1) {
            return QStringLiteral("--set needs NAME=VALUE, not \"%1\".").arg(setting);
        }
        commandLine->settings.append({setting.left(separator), setting.mid(separator + 1)});
    }
    return {};
}

QString readTimeout(const QCommandLineParser &, CommandLine *commandLine)
{
    const QString text = commandLine->timeoutText;
    if (text.isEmpty()) {
        return {};
    }
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    const int maxSeconds = std::numeric_limits<int>::max() / millisecondsPerSecond;
    if (!isNumber || !(seconds >= 0.001 && seconds <= maxSeconds)) {
        return QStringLiteral("--timeout needs a number of seconds from 0.001 to %1, not \"%2\".")
            .arg(QString::number(maxSeconds), text);
    }
    commandLine->timeoutMs = int(seconds * millisecondsPerSecond);
    return {};
}

/// The first error; empty when there is none.
QString readAll(const QCommandLineParser &parser, CommandLine *commandLine)
{
    for (const auto &reader :
         {readCommand, readOptions, readArguments, checkCombinations, readSettings, readTimeout}) {
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
    for (const OptionInfo &option : allOptions()) {
        parser.addOption(parserOption(option));
    }
    CommandLine commandLine;
    const bool isParsed = parser.parse(arguments);
    commandLine.problem = isParsed ? readAll(parser, &commandLine) : unknownOption(parser);
    // Also when there is no command, or something else is wrong.
    for (const OptionInfo &option : generalOptions()) {
        if (parser.isSet(QLatin1String(option.name))) {
            store(parser.values(QLatin1String(option.name)), option.member, &commandLine);
        }
    }
    commandLine.isHelpWanted = commandLine.isHelpWanted && isParsed;
    commandLine.isVersionWanted = commandLine.isVersionWanted && isParsed;
    return commandLine;
}
