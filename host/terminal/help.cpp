// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/help.h"

#include "host/terminal/commandtable.h"

namespace {

const int commandWidth = 18;
const int optionWidth = 26;

const char closing[] = R"(
Inputs are applied in the order above. Relative paths are resolved against the
current directory, those in a project file against its directory.

Exit status:
  0  success
  1  an input was rejected, or a check, a validation or the build failed
  2  the command line is invalid; nothing was done
  3  the plug-in could not be loaded
After INT, TERM, HUP or QUIT, the program cleans up and is killed by the same
signal. A shell shows 130 for INT (Ctrl-C) and 143 for TERM.

Environment:
  LOOMWRIGHT_PLUGIN  the plug-in, unless --plugin is given; with --target, its
                     directory is searched
  PATH               where tamblin-stitcher is searched for without --stitcher
  TMPDIR             where the work directory of a build is created, else /tmp
  NO_COLOR           if set, output has no colour
)";

/// The name of an option as it is typed, "-o, --output FILE".
QString optionUsage(const OptionInfo &option)
{
    QString usage = option.shortName
        ? QStringLiteral("-%1, --").arg(QLatin1String(option.shortName))
        : QStringLiteral("    --");
    usage += QLatin1String(option.name);
    return option.value ? usage + QLatin1Char(' ') + QLatin1String(option.value) : usage;
}

QString optionLines(const char *title, const std::vector<OptionInfo> &options)
{
    QString text
        = options.empty() ? QString() : QStringLiteral("\n%1:\n").arg(QLatin1String(title));
    for (const OptionInfo &option : options) {
        text += QLatin1String("  ") + optionUsage(option).leftJustified(optionWidth)
            + QLatin1String(option.description)
            + QLatin1String(option.isRepeatable() ? " Repeatable.\n" : "\n");
    }
    return text;
}

} // namespace

QString commandOverview()
{
    QString text
        = QStringLiteral("Usage: loomwright [OPTIONS] COMMAND\n\n"
                         "Checks firmware files and builds phone images from them.\n\nCommands:\n");
    for (const CommandInfo &command : commandTable()) {
        const QString usage
            = QLatin1String(command.name) + QLatin1Char(' ') + QLatin1String(command.arguments);
        text += QLatin1String("  ") + usage.leftJustified(commandWidth)
            + QLatin1String(command.summary) + QLatin1Char('\n');
    }
    return text + QLatin1String("\n\"loomwright help COMMAND\" shows help for one of them.\n");
}

QString helpText()
{
    return commandOverview() + optionLines("Inputs", inputOptions())
        + optionLines("Options", generalOptions()) + QLatin1String(closing);
}

QString helpText(const CommandInfo &command)
{
    const QString name = QLatin1String(command.name);
    QString usage = QStringLiteral("Usage: loomwright [OPTIONS] ") + name;
    if (!command.options.empty()) {
        usage += QStringLiteral(" [%1 OPTIONS]").arg(name.toUpper());
    }
    if (*command.arguments) {
        usage += QLatin1Char(' ') + QLatin1String(command.arguments);
    }
    return usage + QLatin1String("\n\n") + QLatin1String(command.description) + QLatin1String("\n")
        + optionLines("Options of this command", command.options)
        + QStringLiteral("\nExample:\n  %1\n\n\"loomwright --help\" shows the options that all "
                         "commands share.\n")
              .arg(QLatin1String(command.example));
}
