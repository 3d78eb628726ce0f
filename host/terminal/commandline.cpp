// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandline.h"

#include "host/terminal/commandtable.h"
#include "host/terminal/optionnames.h"
#include "host/terminal/suggestion.h"

#include <QCommandLineParser>

#include <limits>

namespace {

const int millisecondsPerSecond = 1000;

QString dashed(const char *name)
{
    return QLatin1String("--") + QLatin1String(name);
}

/// All options of all commands, without duplicates.
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

bool takes(const CommandInfo &command, const OptionInfo &option)
{
    const auto contains = [&option](const std::vector<OptionInfo> &options) {
        for (const OptionInfo &each : options) {
            if (qstrcmp(each.name, option.name) == 0) {
                return true;
            }
        }
        return false;
    };
    return contains(command.options) || contains(generalOptions())
        || (command.needs == CommandNeeds::Plugin && contains(inputOptions()));
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

QString unknownCommand(const QString &name, CommandLine *commandLine)
{
    commandLine->isCommandUnknown = true;
    return QStringLiteral("Unknown command \"%1\".%2")
        .arg(name, suggestionText(closestTo(name, commandNames())));
}

QString readCommand(const QCommandLineParser &parser, CommandLine *commandLine)
{
    commandLine->arguments = parser.positionalArguments();
    if (commandLine->arguments.isEmpty()) {
        commandLine->isCommandUnknown = true;
        return QStringLiteral("No command is given.");
    }
    commandLine->command = findCommand(commandLine->arguments.first());
    if (!commandLine->command) {
        return unknownCommand(commandLine->arguments.first(), commandLine);
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
        return unknownCommand(commandLine->arguments.first(), commandLine);
    }
    return count > command.maxArguments ? QStringLiteral("Unexpected argument \"%1\".")
                                              .arg(commandLine->arguments.at(command.maxArguments))
                                        : QString();
}

/// An option may be given once unless it is repeatable, must have a value that is not empty, and
/// must be one that the command takes.
QString checkOptions(const QCommandLineParser &parser, CommandLine *commandLine)
{
    for (const OptionInfo &option : allOptions()) {
        const QStringList values = parser.values(QLatin1String(option.name));
        if (!parser.isSet(QLatin1String(option.name))) {
            continue;
        }
        if (!takes(*commandLine->command, option)) {
            return QStringLiteral("%1 does not take %2.")
                .arg(QLatin1String(commandLine->command->name), dashed(option.name));
        }
        if (option.value && !option.isRepeatable && values.count() > 1) {
            return QStringLiteral("%1 is given more than once.").arg(dashed(option.name));
        }
        // For example from an unset variable in a script.
        if (!option.mayBeEmpty && values.contains(QString())) {
            return QStringLiteral("%1 needs a value that is not empty.").arg(dashed(option.name));
        }
    }
    return {};
}

QString checkCombinations(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const auto has = [&parser](const char *name) { return parser.isSet(QLatin1String(name)); };
    if (has(OptionName::plugin) && has(OptionName::target)) {
        return QStringLiteral("--plugin and --target cannot be combined.");
    }
    if (has(OptionName::quiet) && has(OptionName::verbose)) {
        return QStringLiteral("--quiet and --verbose cannot be combined.");
    }
    if (has(OptionName::names) && has(OptionName::json)) {
        return QStringLiteral("--names and --json cannot be combined.");
    }
    if (has(OptionName::locked) && !has(OptionName::project)) {
        return QStringLiteral("--locked needs --project.");
    }
    if (has(OptionName::dryRun) && has(OptionName::manifest)) {
        return QStringLiteral("--dry-run and --manifest cannot be combined.");
    }
    if (has(OptionName::output) && has(OptionName::image)
        && commandLine->command == findCommand(QStringLiteral("build"))) {
        return QStringLiteral("--output and --image are the same here; give one of them.");
    }
    const int standardInputs = commandLine->arguments.count(QLatin1String(standardInputName))
        + (commandLine->configInput == QLatin1String(standardInputName) ? 1 : 0);
    return standardInputs > 1 ? QStringLiteral("Standard input can be read only once.") : QString();
}

QString readSettings(const QCommandLineParser &parser, CommandLine *commandLine)
{
    const QStringList settings = parser.values(QLatin1String(OptionName::set));
    for (const QString &setting : settings) {
        const int separator = setting.indexOf(QLatin1Char('='));
        if (separator < 1) {
            return QStringLiteral("--set needs NAME=VALUE, not \"%1\".").arg(setting);
        }
        commandLine->settings.append({setting.left(separator), setting.mid(separator + 1)});
    }
    return {};
}

QString readTimeout(const QCommandLineParser &parser, CommandLine *commandLine)
{
    if (!parser.isSet(QLatin1String(OptionName::timeout))) {
        return {};
    }
    const QString text = parser.value(QLatin1String(OptionName::timeout));
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
         {readCommand, checkOptions, readArguments, checkCombinations, readSettings, readTimeout}) {
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
    const bool isParsed = parser.parse(arguments);
    const auto has = [&parser](const char *name) { return parser.isSet(QLatin1String(name)); };
    const auto text = [&parser](const char *name) { return parser.value(QLatin1String(name)); };

    CommandLine commandLine;
    commandLine.pluginFile = text(OptionName::plugin);
    commandLine.target = text(OptionName::target);
    commandLine.projectFile = text(OptionName::project);
    commandLine.isLocked = has(OptionName::locked);
    commandLine.configInput = text(OptionName::config);
    commandLine.directory = text(OptionName::directory);
    commandLine.files = parser.values(QLatin1String(OptionName::file));
    commandLine.imageFile = text(OptionName::image);
    commandLine.outputFile = text(OptionName::output);
    commandLine.isDryRun = has(OptionName::dryRun);
    commandLine.isChecked = !has(OptionName::noCheck);
    commandLine.stitcherFile = text(OptionName::stitcher);
    commandLine.manifestFile = text(OptionName::manifest);
    commandLine.isWorkKept = has(OptionName::keepWork);
    commandLine.areNamesWanted = has(OptionName::names);
    commandLine.isHelpWanted = isParsed && has(OptionName::help);
    commandLine.isVersionWanted = isParsed && has(OptionName::version);
    if (has(OptionName::json)) {
        commandLine.format = Report::Format::Json;
    }
    if (has(OptionName::verbose) || has(OptionName::quiet)) {
        commandLine.verbosity
            = has(OptionName::quiet) ? Report::Verbosity::Quiet : Report::Verbosity::Verbose;
    }
    commandLine.problem = isParsed ? readAll(parser, &commandLine) : unknownOption(parser);
    return commandLine;
}
