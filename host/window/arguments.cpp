// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/arguments.h"

namespace {

const QLatin1String endOfOptions("--");

/// Session managers and desktops start programs with some of these.
QStringList qtOptionsWithValue()
{
    return {QStringLiteral("-display"),       QStringLiteral("-geometry"),
            QStringLiteral("-platform"),      QStringLiteral("-platformpluginpath"),
            QStringLiteral("-platformtheme"), QStringLiteral("-qwindowgeometry"),
            QStringLiteral("-qwindowicon"),   QStringLiteral("-qwindowtitle"),
            QStringLiteral("-session"),       QStringLiteral("-style"),
            QStringLiteral("-stylesheet")};
}

QStringList qtOptionsWithoutValue()
{
    return {QStringLiteral("-reverse"), QStringLiteral("-widgetcount")};
}

} // namespace

Arguments splitArguments(const QStringList &arguments)
{
    const QStringList withValue = qtOptionsWithValue();
    const QStringList withoutValue = qtOptionsWithoutValue();
    Arguments split;
    split.forQt = arguments.mid(0, 1);
    split.own = split.forQt;
    for (int i = 1; i < arguments.count(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == endOfOptions) {
            split.own += arguments.mid(i);
            break;
        }
        const QString name = argument.section(QLatin1Char('='), 0, 0);
        if (withValue.contains(argument)) {
            split.forQt += arguments.mid(i, 2);
            ++i;
        } else if (withValue.contains(name) || withoutValue.contains(argument)) {
            split.forQt << argument;
        } else {
            split.own << argument;
        }
    }
    return split;
}
