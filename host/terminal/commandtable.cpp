// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandtable.h"

#include "host/terminal/commands.h"

#include <limits>

namespace {

const int anyNumber = std::numeric_limits<int>::max();

OptionInfo outputOption()
{
    return {"output", "o", "FILE", "The file to write.", &CommandLine::outputFile};
}

OptionInfo namesOption(const char *description)
{
    return {"names", nullptr, nullptr, description, &CommandLine::areNamesWanted};
}

OptionInfo stitcherOption()
{
    return {"stitcher", nullptr, "FILE", "The stitcher, instead of the one in PATH.",
            &CommandLine::stitcherFile};
}

std::vector<OptionInfo> buildOptions()
{
    return {
        {"output", "o", "FILE", "Short form of --image.", &CommandLine::imageFile},
        {"dry-run", nullptr, nullptr, "Show checks, configuration and command line only.",
         &CommandLine::isDryRun},
        {"no-check", nullptr, nullptr, "Build in spite of errors, unless they are fatal.",
         &CommandLine::isUnchecked},
        stitcherOption(),
        {"timeout", nullptr, "SECONDS", "Terminate a stitcher that runs longer than this.",
         &CommandLine::timeoutText},
        {"manifest", nullptr, "FILE", "Write a manifest of a successful build.",
         &CommandLine::manifestFile},
        {"keep-work", nullptr, nullptr, "Keep the work directory and a failed image.",
         &CommandLine::isWorkKept},
    };
}

} // namespace

const std::vector<CommandInfo> &commandTable()
{
    static const std::vector<CommandInfo> table{
        {"check",
         "",
         0,
         0,
         "check all files",
         "Runs the checks of the plug-in and of this program, and lists all problems.\n"
         "Errors block a build, warnings do not. With --verbose, also lists the checks\n"
         "that passed.",
         {stitcherOption()},
         "loomwright -d drop --image image.bin check",
         CommandNeeds::Inputs,
         CommandStyle::ListsProblems,
         runCheck},
        {"build", "", 0, 0, "check, then run the stitcher and wait for it",
         "Builds only if there are no errors; see --no-check. The image appears whole or\n"
         "not at all: if a build fails, an older image stays as it was. Without --image,\n"
         "the image has the target's default name, in the current directory.",
         buildOptions(), "loomwright -d drop build -o image.bin --manifest image.bin.manifest.json",
         CommandNeeds::Inputs, CommandStyle::ListsProblems, buildImage},
        {"verify",
         "FILE",
         1,
         1,
         "compare image and inputs with a manifest",
         "Lists the files that differ from the manifest. A stitcher that is not there is\n"
         "not compared.",
         {},
         "loomwright verify image.bin.manifest.json",
         CommandNeeds::Plugin,
         CommandStyle::Plain,
         verifyManifest},
        {"ingredients",
         "",
         0,
         0,
         "list ingredients, their values and requirements",
         "Lists group, name, key, value and requirement of every ingredient. Hidden\n"
         "ingredients are marked.",
         {namesOption("Print every name and key that --set accepts, one per line.")},
         "loomwright -d drop ingredients",
         CommandNeeds::Inputs,
         CommandStyle::Plain,
         listIngredients},
        {"validate",
         "FILE...",
         1,
         anyNumber,
         "validate legacy XML data files",
         "Validates each file separately; \"-\" is standard input.",
         {},
         "loomwright validate platform/*.xml",
         CommandNeeds::Plugin,
         CommandStyle::Plain,
         validateFiles},
        {"config",
         "",
         0,
         0,
         "write the stitcher configuration",
         "Writes to standard output without -o. The legacy XML data file is not part of a\n"
         "configuration; a project file stores all values.",
         {outputOption()},
         "loomwright -d drop config -o config.txt",
         CommandNeeds::Inputs,
         CommandStyle::WritesContent,
         writeConfig},
        {"project",
         "",
         0,
         0,
         "write the current values as a project file",
         "Writes to standard output without -o. Paths are relative to the file, or to the\n"
         "current directory.",
         {outputOption()},
         "loomwright -d drop --image image.bin project -o image.loomwright",
         CommandNeeds::Inputs,
         CommandStyle::WritesContent,
         writeProjectFile},
        {"info",
         "",
         0,
         0,
         "show plug-in information",
         "Shows target, version, author, interfaces, Qt version and file of the plug-in, and\n"
         "the data views that it offers with the given inputs.",
         {},
         "loomwright -d drop info",
         CommandNeeds::Inputs,
         CommandStyle::Plain,
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
         CommandStyle::Plain,
         listTargets},
        {"help",
         "[COMMAND]",
         0,
         1,
         "show help for a command",
         "Shows what a command does, its options and an example.",
         {},
         "loomwright help build",
         CommandNeeds::Nothing,
         CommandStyle::Plain,
         nullptr},
    };
    return table;
}

bool OptionInfo::isRepeatable() const
{
    return std::holds_alternative<QStringList CommandLine::*>(member);
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
        {"project", "p", "FILE", "Load a project file or a manifest.", &CommandLine::projectFile},
        {"config", "c", "FILE", "Load a stitcher configuration; \"-\" is standard input.",
         &CommandLine::configInput},
        {"directory", "d", "DIR", "Fill ingredients from files in DIR, by name.",
         &CommandLine::directory},
        {"file", "f", "FILE", "Fill the ingredient that matches the name.", &CommandLine::files},
        {"set", "s", "NAME=VALUE", "Set one ingredient by its name or key.",
         &CommandLine::settingTexts, true},
        {"image", nullptr, "FILE", "Set the image to write.", &CommandLine::imageFile},
        {"locked", nullptr, nullptr, "Reject what differs from the manifest of -p.",
         &CommandLine::isLocked},
    };
    return options;
}

const std::vector<OptionInfo> &generalOptions()
{
    static const std::vector<OptionInfo> options{
        {"plugin", nullptr, "FILE", "Load this plug-in.", &CommandLine::pluginFile},
        {"target", nullptr, "NAME", "Load the plug-in for this target.", &CommandLine::target},
        {"json", nullptr, nullptr, "Print one JSON document.", &CommandLine::isJson},
        {"verbose", "v", nullptr, "Show all messages and the checks that passed.",
         &CommandLine::isVerbose},
        {"quiet", "q", nullptr, "Show only failures and the result.", &CommandLine::isQuiet},
        {"help", "h", nullptr, "Show help, for a command if one is given.",
         &CommandLine::isHelpWanted},
        {"version", nullptr, nullptr, "Show the program's version.", &CommandLine::isVersionWanted},
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
