// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commandtable.h"

#include "host/terminal/commands.h"

#include <limits>

namespace {

OptionInfo outputOption()
{
    return {"output", "o", "FILE", "Write to this file.", &CommandLine::outputFile};
}

OptionInfo namesOption(const char *description)
{
    return {"names", nullptr, nullptr, description, &CommandLine::areNamesWanted};
}

OptionInfo stitcherOption()
{
    return {"stitcher", nullptr, "FILE", "Use this stitcher, not the one in PATH.",
            &CommandLine::stitcherFile};
}

std::vector<OptionInfo> buildOptions()
{
    return {
        {"output", "o", "FILE", "Short form of --image.", &CommandLine::imageFile},
        {"dry-run", nullptr, nullptr, "Only show checks, configuration and command line.",
         &CommandLine::isDryRun},
        {"no-check", nullptr, nullptr, "Build in spite of errors that are not fatal.",
         &CommandLine::isUnchecked},
        stitcherOption(),
        {"timeout", nullptr, "SECONDS", "Terminate a stitcher that runs longer than this.",
         &CommandLine::timeoutText},
        {"manifest", nullptr, "FILE", "Write a manifest of a successful build.",
         &CommandLine::manifestFile},
        {"keep-work", nullptr, nullptr, "Keep the work directory and what was written.",
         &CommandLine::isWorkKept},
    };
}

} // namespace

const std::vector<CommandInfo> &commandTable()
{
    static const std::vector<CommandInfo> table{
        {"check",
         "",
         "check all files",
         "Runs the checks of the plug-in and of this program, and lists all problems.\n"
         "Errors block a build, warnings do not. With --verbose, the checks that passed\n"
         "are listed too.",
         {stitcherOption()},
         "loomwright -d drop --image image.bin check",
         CommandNeeds::Inputs,
         runCheck,
         true},
        {"build", "", "check, then run the stitcher and wait for it",
         "Runs the checks and, if there are no errors, the stitcher; see --no-check. The\n"
         "image appears whole or not at all: if the build fails, an older image stays as\n"
         "it was. By default, the image has the target's default name and is in the\n"
         "current directory.",
         buildOptions(), "loomwright -d drop build -o image.bin --manifest image.bin.manifest.json",
         CommandNeeds::Inputs, buildImage, true},
        {"verify",
         "FILE",
         "compare image, inputs and stitcher with a manifest",
         "Compares the image, the input files and the stitcher with a manifest, and lists\n"
         "what differs. A stitcher that no longer exists is not compared.",
         {},
         "loomwright verify image.bin.manifest.json",
         CommandNeeds::Plugin,
         verifyManifest},
        {"ingredients",
         "",
         "list ingredients, their values and requirements",
         "Lists group, name, key, value and requirement of every ingredient. Hidden\n"
         "ingredients are marked.",
         {namesOption("Print only names and keys that --set accepts.")},
         "loomwright -d drop ingredients",
         CommandNeeds::Inputs,
         listIngredients},
        {"validate",
         "FILE...",
         "validate legacy XML data files",
         "Validates legacy XML data files, each by itself; \"-\" is standard input.",
         {},
         "loomwright validate platform/*.xml",
         CommandNeeds::Plugin,
         validateFiles},
        {"config",
         "",
         "write the stitcher configuration",
         "Writes the stitcher configuration, to standard output unless -o is given. The\n"
         "legacy XML data file is not part of it; a project file stores all values.",
         {outputOption()},
         "loomwright -d drop config -o config.txt",
         CommandNeeds::Inputs,
         writeConfig},
        {"project",
         "",
         "write the current values as a project file",
         "Writes the current values as a project file, to standard output unless -o is\n"
         "given. Its paths are relative to the file, or to the current directory.",
         {outputOption()},
         "loomwright -d drop --image image.bin project -o image.loomwright",
         CommandNeeds::Inputs,
         writeProjectFile},
        {"info",
         "",
         "show plug-in information",
         "Shows target, version, author, interfaces, Qt version and file of the plug-in,\n"
         "and the data views that it offers with the given inputs.",
         {},
         "loomwright -d drop info",
         CommandNeeds::Inputs,
         showInfo},
        {"targets",
         "",
         "list the targets of the installed plug-ins",
         "Lists the targets of all plug-ins, as names for --target. Searches the\n"
         "directory of the plug-in that --plugin or LOOMWRIGHT_PLUGIN names, else those\n"
         "of the program and of the installed plug-ins.",
         {namesOption("Print only the names, one per line.")},
         "loomwright targets",
         CommandNeeds::Nothing,
         listTargets},
        {"help",
         "[COMMAND]",
         "show help for a command",
         "Shows what a command does, its options and an example.",
         {},
         "loomwright help build",
         CommandNeeds::Nothing,
         nullptr},
    };
    return table;
}

int CommandInfo::minArguments() const
{
    const QLatin1String usage(arguments);
    return usage.isEmpty() || usage.startsWith(QLatin1Char('[')) ? 0 : 1;
}

int CommandInfo::maxArguments() const
{
    const QLatin1String usage(arguments);
    if (usage.endsWith(QLatin1String("..."))) {
        return std::numeric_limits<int>::max();
    }
    return usage.isEmpty() ? 0 : 1;
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
        {"config", "c", "FILE", "Load a configuration; \"-\" is standard input.",
         &CommandLine::configInput},
        {"directory", "d", "DIR", "Fill ingredients from files in DIR, by name.",
         &CommandLine::directory},
        {"file", "f", "FILE", "Fill an ingredient from FILE, by name.", &CommandLine::files},
        {"set", "s", "NAME=VALUE", "Set one ingredient by its name or key.",
         &CommandLine::settings},
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

std::vector<OptionInfo> optionsOf(const CommandInfo &command)
{
    std::vector<OptionInfo> options = command.options;
    if (command.needs == CommandNeeds::Inputs) {
        options.insert(options.end(), inputOptions().begin(), inputOptions().end());
    }
    options.insert(options.end(), generalOptions().begin(), generalOptions().end());
    return options;
}

const std::vector<OptionInfo> &allOptions()
{
    static const std::vector<OptionInfo> options = [] {
        std::vector<OptionInfo> found;
        QStringList names;
        for (const CommandInfo &command : commandTable()) {
            for (const OptionInfo &option : optionsOf(command)) {
                if (!names.contains(QLatin1String(option.name))) {
                    names.append(QLatin1String(option.name));
                    found.push_back(option);
                }
            }
        }
        return found;
    }();
    return options;
}
