// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/reference/markers.h"
#include "host/terminal/commandtable.h"

#include <QRegularExpression>

namespace {

QString escaped(const char *text)
{
    return QString::fromUtf8(text).replace(QRegularExpression(QStringLiteral("([\\\\*_#~<>])")),
                                           QStringLiteral("\\\\1"));
}

/// A term and, indented, its description.
QString definition(const QString &term, const QString &text, const QString &indent)
{
    return indent + term + QLatin1Char('\n') + indent + QLatin1Char('\t') + text
        + QLatin1String("\n\n");
}

QString optionList(const std::vector<OptionInfo> &options, const QString &indent = {})
{
    QString text;
    for (const OptionInfo &option : options) {
        QString term = option.shortName
            ? QStringLiteral("*-%1*, ").arg(QLatin1String(option.shortName))
            : QString();
        term += QStringLiteral("*--%1*").arg(QLatin1String(option.name));
        if (option.value) {
            term += QStringLiteral(" _%1_").arg(QLatin1String(option.value));
        }
        const QLatin1String repeatable(option.isRepeatable() ? " Repeatable." : "");
        text += definition(term, escaped(option.description) + repeatable, indent);
    }
    return text;
}

QString commandList()
{
    QString text;
    for (const CommandInfo &command : commandTable()) {
        QString term = QStringLiteral("*%1*").arg(QLatin1String(command.name));
        if (*command.arguments) {
            term += QLatin1Char(' ') + escaped(command.arguments);
        }
        const QString description
            = escaped(command.description).replace(QLatin1Char('\n'), QLatin1String("\n\t"));
        text += definition(term, description, {})
            + optionList(command.options, QStringLiteral("\t"));
    }
    return text;
}

} // namespace

Markers manualMarkers()
{
    return {
        {QStringLiteral("MANUAL_COMMANDS"), commandList()},
        {QStringLiteral("MANUAL_INPUTS"), optionList(inputOptions())},
        {QStringLiteral("MANUAL_OPTIONS"), optionList(generalOptions())},
    };
}
