// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandtable.h"

#include "host/terminal/commands.h"
#include "host/terminal/optionnames.h"

#include <limits>

namespace {

const int anyNumber = std::numeric_limits<int>::max();

OptionInfo outputOption(const char *description)
{
    return {OptionName::output, "o", "FILE", description};
}

OptionInfo namesOption(const char *description)
{
    return {OptionName::names, nullptr, nullptr, description};
}

std::vector<OptionInfo> buildOptions()
{
    return {
        {OptionName::output, "o", "FILE", "Short form of --image."},
        {OptionName::dryRun, nullptr, nullptr,
         "Show checks, configuration and command line; do not build."},
        {OptionName::noCheck, nullptr, nullptr,
         "Build even if checks fail or the plug-in reported errors."},
        {OptionName::stitcher, nullptr, "FILE",
         "The stitcher, instead of the one in the search path."},
        {OptionName::timeout, nullptr, "SECONDS", "Stop a stitcher that runs longer than this."},
        {OptionName::manifest, nullptr, "FILE", "Write a manifest of a successful build."},
        {OptionName::keepWork, nullptr, nullptr, "Keep the work directory and show where it is."},
    };
}

} // namespace

const std::vector<CommandInfo> &commandTable()
{
    static const std::vector<CommandInfo> table{
        {"info",
         "",
         0,
         0,
         "show plug-in information",
         "Shows target, version, author, interfaces, Qt version and file of the plug-in, and\n"
         "the data views that it offers with the given inputs.",
         {},
         "loomwright -d drop info",
         CommandNeeds::Plugin,
         showInfo},
        {"targets",
         "",
         0,
         0,
         "list the plug-ins in the plug-in directory",
         "Lists the targets of all plug-ins, as names for --target. Searches the directory\n"
         "of the plug-in given by --plugin or LOOMWRIGHT_PLUGIN, else the program's and\n"
         "the installed plug-in directory.",
         {namesOption("Print only the names, one per line.")},
         "loomwright targets",
         CommandNeeds::Nothing,
         listTargets},
        {"ingredients",
         "",
         0,
         0,
         "list ingredients, their values and requirements",
         "Lists group, name, key, value and requirement of every ingredient. Hidden\n"
         "ingredients are marked.",
         {namesOption("Print every name and key that --set accepts, one per line.")},
         "loomwright -d drop ingredients",
         CommandNeeds::Plugin,
         listIngredients},
        {"check",
         "",
         0,
         0,
         "check all files",
         "Runs the checks of the plug-in and of this program, and lists what blocks a\n"
         "build. With --verbose, also lists the checks that passed.",
         {},
         "loomwright -d drop --image image.bin check",
         CommandNeeds::Plugin,
         runCheck},
        {"validate",
         "FILE...",
         1,
         anyNumber,
         "validate legacy XML data files",
         "Validates each file separately; \"-\" is standard input.",
         {},
         "loomwright validate platform/*.xml",
         CommandNeeds::Plugin,
         validateFiles},
        {"config",
         "",
         0,
         0,
         "write the stitcher configuration",
         "Writes to standard output without -o. The legacy XML data file is not part of a\n"
         "configuration; a project file stores all values.",
         {outputOption("The file to write.")},
         "loomwright -d drop config -o config.txt",
         CommandNeeds::Plugin,
         writeConfig},
        {"project",
         "",
         0,
         0,
         "write the current values as a project file",
         "Writes to standard output without -o. Paths are relative to the file, or to the\n"
         "current directory.",
         {outputOption("The file to write.")},
         "loomwright -d drop --image image.bin project -o image.loomwright",
         CommandNeeds::Plugin,
         writeProjectFile},
        {"build", "", 0, 0, "check, then run the stitcher and wait for it",
         "Builds only if there are no problems; see --no-check. If a build fails, an older\n"
         "image is restored, and what the build wrote is kept as IMAGE.partial.",
         buildOptions(), "loomwright -d drop build -o image.bin --manifest image.bin.manifest.json",
         CommandNeeds::Plugin, buildImage},
        {"verify",
         "FILE",
         1,
         1,
         "compare image and inputs with a manifest",
         "Lists the files that differ from the manifest.",
         {},
         "loomwright verify image.bin.manifest.json",
         CommandNeeds::Nothing,
         verifyManifest},
        {"help",
         "[COMMAND]",
         0,
         1,
         "show help for a command",
         "Shows what a command does, its options and an example.",
         {},
         "loomwright help build",
         CommandNeeds::Nothing,
         nullptr},
    };
    return table;
}

const CommandInfo *findCommand(const QString &name)
{
    for (const CommandInfo &command : commandTable()) {
        if (name == QLatin1String(command.name)) {
            return &command;
        }
    }
    return nullptr;
}

QStringList commandNames()
{
    QStringList names;
    for (const CommandInfo &command : commandTable()) {
        names.append(QLatin1String(command.name));
    }
    return names;
}

const std::vector<OptionInfo> &inputOptions()
{
    static const std::vector<OptionInfo> options{
        {OptionName::project, "p", "FILE", "Load a project file or a manifest."},
        {OptionName::config, "c", "FILE",
         "Load a stitcher configuration; \"-\" is standard input."},
        {OptionName::directory, "d", "DIR",
         "Fill ingredients from the files of a directory, by name."},
        {OptionName::file, "f", "FILE", "Fill the ingredient that matches the file's name.", true},
        {OptionName::set, "s", "NAME=VALUE", "Set one ingredient by its name or key.", true, true},
        {OptionName::image, nullptr, "FILE", "Set the image to write."},
        {OptionName::locked, nullptr, nullptr,
         "Refuse inputs that differ from the manifest of --project."},
    };
    return options;
}

const std::vector<OptionInfo> &generalOptions()
{
    static const std::vector<OptionInfo> options{
        {OptionName::plugin, nullptr, "FILE", "Load this plug-in."},
        {OptionName::target, nullptr, "NAME", "Load the plug-in for this target."},
        {OptionName::json, nullptr, nullptr, "Print one JSON document on standard output."},
        {OptionName::verbose, "v", nullptr,
         "Show the plug-in's status messages and the checks that passed."},
        {OptionName::quiet, "q", nullptr, "Show only failures and the result."},
        {OptionName::help, "h", nullptr, "Show help, for a command if one is given."},
        {OptionName::version, nullptr, nullptr, "Show the program's version."},
    };
    return options;
}

QString optionUsage(const OptionInfo &option)
{
    QString usage = option.shortName
        ? QStringLiteral("-%1, --").arg(QLatin1String(option.shortName))
        : QStringLiteral("    --");
    usage += QLatin1String(option.name);
    return option.value ? usage + QLatin1Char(' ') + QLatin1String(option.value) : usage;
}
