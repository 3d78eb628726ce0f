// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/reference/markers.h"
#include "host/terminal/commandtable.h"

#include <QStringList>

#include <functional>

namespace {

/// The options that are offered before a command is typed.
std::vector<OptionInfo> sharedOptions()
{
    std::vector<OptionInfo> options = inputOptions();
    options.insert(options.end(), generalOptions().begin(), generalOptions().end());
    return options;
}

QStringList spellings(const OptionInfo &option)
{
    QStringList words(QLatin1String("--") + QLatin1String(option.name));
    if (option.shortName) {
        words.prepend(QLatin1Char('-') + QLatin1String(option.shortName));
    }
    return words;
}

/// @p text in single quotes, which all three shells read alike as long as it contains none.
QString quoted(const QString &text)
{
    return QLatin1Char('\'') + QString(text).replace(QLatin1String("'"), QLatin1String("'\\''"))
        + QLatin1Char('\'');
}

/// One branch per command, and a last one for a line without a command.
QString branches(const std::function<QString(const std::vector<OptionInfo> &)> &body)
{
    QString text;
    for (const CommandInfo &command : commandTable()) {
        text += QStringLiteral("    %1) %2 ;;\n")
                    .arg(QLatin1String(command.name), body(optionsOf(command)));
    }
    return text + QStringLiteral("    *) %1 ;;\n").arg(body(sharedOptions()));
}

QString zshAction(const OptionInfo &option)
{
    const QString value = QLatin1String(option.value);
    if (value == QLatin1String("NAME=VALUE")) {
        return QStringLiteral(":ingredient:_loomwright_setting");
    }
    if (value == QLatin1String("NAME")) {
        return QStringLiteral(":target:_loomwright_target");
    }
    if (value == QLatin1String("DIR")) {
        return QStringLiteral(":directory:_files -/");
    }
    return value == QLatin1String("FILE") ? QStringLiteral(":file:_files")
                                          : QStringLiteral(":%1: ").arg(value.toLower());
}

/// One option for zsh's _arguments. Its spellings exclude each other unless the option may be
/// repeated.
QString zshOption(const OptionInfo &option)
{
    QString description = QLatin1String(option.description);
    description.replace(QLatin1Char('['), QLatin1String("\\["))
        .replace(QLatin1Char(']'), QLatin1String("\\]"));
    const QString rest = QLatin1Char('[') + description + QLatin1Char(']')
        + (option.value ? zshAction(option) : QString());
    QStringList arguments;
    const QStringList names = spellings(option);
    const QString prefix = option.isRepeatable()
        ? QStringLiteral("*")
        : QStringLiteral("(%1)").arg(names.join(QLatin1Char(' ')));
    for (const QString &name : names) {
        const QString isLong = name.startsWith(QLatin1String("--")) && option.value
            ? QStringLiteral("=")
            : QString();
        arguments.append(quoted(prefix + name + isLong + rest));
    }
    return arguments.join(QLatin1Char(' '));
}

QString fishValue(const OptionInfo &option)
{
    const QString value = QLatin1String(option.value ? option.value : "");
    if (value.isEmpty()) {
        return {};
    }
    if (value == QLatin1String("NAME=VALUE")) {
        return QStringLiteral(" -x -a '(__loomwright_settings)'");
    }
    if (value == QLatin1String("NAME")) {
        return QStringLiteral(" -x -a '(__loomwright_targets)'");
    }
    if (value == QLatin1String("DIR")) {
        return QStringLiteral(" -x -a '(__fish_complete_directories)'");
    }
    return value == QLatin1String("FILE") ? QStringLiteral(" -r -F") : QStringLiteral(" -x");
}

QString fishOptions(const std::vector<OptionInfo> &options, const QString &condition)
{
    QString text;
    for (const OptionInfo &option : options) {
        text += QLatin1String("complete -c loomwright") + condition;
        if (option.shortName) {
            text += QStringLiteral(" -s %1").arg(QLatin1String(option.shortName));
        }
        text += QStringLiteral(" -l %1").arg(QLatin1String(option.name)) + fishValue(option)
            + QLatin1String(" -d ") + quoted(QLatin1String(option.description)) + QLatin1Char('\n');
    }
    return text;
}

/// One branch per command: the options that it takes.
QString bashOptions()
{
    return branches([](const std::vector<OptionInfo> &options) {
        QStringList names;
        for (const OptionInfo &option : options) {
            names += spellings(option);
        }
        return QStringLiteral("echo ") + quoted(names.join(QLatin1Char(' ')));
    });
}

/// One branch per option with a value: the kind of value.
QString bashValues()
{
    QString text;
    for (const OptionInfo &option : allOptions()) {
        if (option.value) {
            text += QStringLiteral("    %1) echo %2 ;;\n")
                        .arg(spellings(option).join(QStringLiteral(" | ")),
                             QLatin1String(option.value));
        }
    }
    return text;
}

/// One line per command, "name:summary".
QString zshCommands()
{
    QString text;
    for (const CommandInfo &command : commandTable()) {
        text += QLatin1String("        ")
            + quoted(QLatin1String(command.name) + QLatin1Char(':')
                     + QLatin1String(command.summary))
            + QLatin1Char('\n');
    }
    return text;
}

/// One branch per command: its options, for _arguments.
QString zshOptions()
{
    return branches([](const std::vector<OptionInfo> &options) {
        QStringList arguments;
        for (const OptionInfo &option : options) {
            arguments.append(zshOption(option));
        }
        return QStringLiteral("options=(%1)").arg(arguments.join(QLatin1Char(' ')));
    });
}

QString fishCompletions()
{
    QString text;
    QStringList withoutInputs;
    for (const CommandInfo &command : commandTable()) {
        const QString name = QLatin1String(command.name);
        text += QStringLiteral("complete -c loomwright -n __fish_use_subcommand -f -a %1 -d %2\n")
                    .arg(name, quoted(QLatin1String(command.summary)))
            + fishOptions(command.options,
                          QStringLiteral(" -n '__fish_seen_subcommand_from %1'").arg(name));
        if (command.needs != CommandNeeds::Inputs) {
            withoutInputs.append(name);
        }
    }
    return text
        + fishOptions(inputOptions(),
                      QStringLiteral(" -n 'not __fish_seen_subcommand_from %1'")
                          .arg(withoutInputs.join(QLatin1Char(' '))))
        + fishOptions(generalOptions(), {});
}

} // namespace

Markers completionMarkers()
{
    return {
        {QStringLiteral("BASH_COMMANDS"), commandNames().join(QLatin1Char(' '))},
        {QStringLiteral("BASH_OPTIONS"), bashOptions()},
        {QStringLiteral("BASH_VALUES"), bashValues()},
        {QStringLiteral("ZSH_COMMANDS"), zshCommands()},
        {QStringLiteral("ZSH_OPTIONS"), zshOptions()},
        {QStringLiteral("FISH_COMPLETIONS"), fishCompletions()},
    };
}
