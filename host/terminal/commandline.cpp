// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandline.h"

#include "host/terminal/commandtable.h"
#include "host/terminal/suggestion.h"

#include <QCommandLineParser>

#include <algorithm>
#include <limits>

namespace {

const int millisecondsPerSecond = 1000;

QString dashed(const char *name)
{
    return QLatin1String("--") + QLatin1String(name);
}

QCommandLineOption parserOption(const OptionInfo &option)
{
    QStringList names(QLatin1String(option.name));
    if (option.shortName) {
        names.prepend(QLatin1String(option.shortName));
    }
    return {names, QString(), QLatin1String(option.value ? option.value : "")};
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
    const QString &name = unknown.first();
    if (name.length() == 1) {
        return QStringLiteral("Unknown option \"-%1\".").arg(name);
    }
    QStringList names;
    for (const OptionInfo &option : allOptions()) {
        names.append(QLatin1String(option.name));
    }
    const QString meant = closestTo(name, names);
    return QStringLiteral("Unknown option \"--%1\".%2")
        .arg(name, meant.isEmpty() ? QString() : suggestionText(QLatin1String("--") + meant));
}

/// Notes what is wrong with the command line, if anything; the first problem is reported.
void reject(CommandLine *commandLine, const QString &problem)
{
    if (commandLine->problem.isEmpty()) {
        commandLine->problem = problem;
    }
}

void rejectCommand(CommandLine *commandLine, const QString &name)
{
    QString meant = closestTo(name, commandNames());
    for (const OptionInfo &option : generalOptions()) {
        meant = name == QLatin1String(option.name) ? dashed(option.name) : meant;
    }
    reject(commandLine,
           QStringLiteral("Unknown command \"%1\".%2").arg(name, suggestionText(meant)));
}

void readCommand(const QCommandLineParser &parser, CommandLine *commandLine)
{
    commandLine->arguments = parser.positionalArguments();
    if (commandLine->arguments.isEmpty()) {
        reject(commandLine, QStringLiteral("No command is given."));
        return;
    }
    commandLine->command = findCommand(commandLine->arguments.first());
    if (commandLine->command) {
        commandLine->arguments.removeFirst();
    } else {
        rejectCommand(commandLine, commandLine->arguments.first());
    }
}

/// Why @p option cannot have these values; empty when it can.
QString valueProblem(const OptionInfo &option, const QStringList &values)
{
    if (option.value && !option.isRepeatable() && values.count() > 1) {
        return QStringLiteral("%1 is given more than once.").arg(dashed(option.name));
    }
    // For example from an unset variable in a script.
    return values.contains(QString()) && option.value
        ? QStringLiteral("%1 needs a value that is not empty.").arg(dashed(option.name))
        : QString();
}

/// Stores the values of the options that the command takes; without a command, of the general ones.
void readOptions(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const CommandInfo *command = commandLine->command;
    const std::vector<OptionInfo> taken = command ? optionsOf(*command) : generalOptions();
    for (const OptionInfo &each : allOptions()) {
        const QLatin1String name(each.name);
        if (!parser.isSet(name)) {
            continue;
        }
        const auto option = std::find_if(taken.begin(), taken.end(), [name](const OptionInfo &own) {
            return QLatin1String(own.name) == name;
        });
        if (option != taken.end()) {
            reject(commandLine, valueProblem(*option, parser.values(name)));
            store(parser.values(name), option->member, commandLine);
        } else if (command) {
            reject(commandLine,
                   QStringLiteral("%1 does not take %2.")
                       .arg(QLatin1String(command->name), dashed(each.name)));
        }
    }
}

void checkArguments(CommandLine *commandLine)
{
    const CommandInfo &command = *commandLine->command;
    const int count = commandLine->arguments.count();
    const bool isHelp = !command.function;
    if (count < command.minArguments()) {
        reject(commandLine,
               QStringLiteral("%1 needs an argument: %2")
                   .arg(QLatin1String(command.name), QLatin1String(command.arguments)));
    } else if (isHelp && count == 1 && !findCommand(commandLine->arguments.first())) {
        rejectCommand(commandLine, commandLine->arguments.first());
    } else if (count > command.maxArguments()) {
        reject(commandLine,
               QStringLiteral("Unexpected argument \"%1\".")
                   .arg(commandLine->arguments.at(command.maxArguments())));
    }
}

void checkCombinations(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const auto forbid = [&](const char *first, const char *second) {
        if (parser.isSet(QLatin1String(first)) && parser.isSet(QLatin1String(second))) {
            reject(
                commandLine,
                QStringLiteral("%1 and %2 cannot be combined.").arg(dashed(first), dashed(second)));
        }
    };
    forbid("plugin", "target");
    forbid("quiet", "verbose");
    forbid("names", "json");
    forbid("dry-run", "manifest");
    if (commandLine->outputFile.isEmpty()) {
        forbid("output", "image"); // They are the same.
    }
    if (commandLine->isLocked && commandLine->projectFile.isEmpty()) {
        reject(commandLine, QStringLiteral("--locked needs --project."));
    }
    const QLatin1String standardInput(standardInputName);
    if (commandLine->arguments.count(standardInput) + (commandLine->configInput == standardInput)
        > 1) {
        reject(commandLine, QStringLiteral("Standard input can be read only once."));
    }
}

void checkSettings(CommandLine *commandLine)
{
    for (const QString &setting : qAsConst(commandLine->settings)) {
        if (setting.indexOf(QLatin1Char('=')) < 1) {
            reject(commandLine, QStringLiteral("--set needs NAME=VALUE, not \"%1\".").arg(setting));
        }
    }
}

void readTimeout(CommandLine *commandLine)
{
    const QString text = commandLine->timeoutText;
    if (text.isEmpty()) {
        return;
    }
    const double seconds = text.toDouble(); // 0 if it is no number.
    const int maxSeconds = std::numeric_limits<int>::max() / millisecondsPerSecond;
    if (seconds >= 0.001 && seconds <= maxSeconds) {
        commandLine->timeoutMs = int(seconds * millisecondsPerSecond);
    } else {
        reject(commandLine,
               QStringLiteral("--timeout needs a number of seconds from 0.001 to %1, not \"%2\".")
                   .arg(QString::number(maxSeconds), text));
    }
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
    if (isParsed) {
        readCommand(parser, &commandLine);
    } else {
        reject(&commandLine, unknownOption(parser));
    }
    readOptions(parser, &commandLine);
    if (commandLine.command) {
        checkArguments(&commandLine);
        checkCombinations(parser, &commandLine);
        checkSettings(&commandLine);
        readTimeout(&commandLine);
    }
    commandLine.isHelpWanted = commandLine.isHelpWanted && isParsed;
    commandLine.isVersionWanted = commandLine.isVersionWanted && isParsed;
    return commandLine;
}
