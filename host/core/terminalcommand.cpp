// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/terminalcommand.h"

#include <QRegularExpression>
#include <QStringList>

QString shellQuoted(const QString &word)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./:=@%+,-]+$"));
    if (plain.match(word).hasMatch()) {
        return word;
    }
    return QLatin1Char('\'') + QString(word).replace(QLatin1Char('\''), QLatin1String("'\\''"))
        + QLatin1Char('\'');
}

QString terminalCommand(const QVector<Ingredient> &ingredients, const QString &pluginFile)
{
    QStringList words{QStringLiteral("loomwright"), QStringLiteral("--plugin"), pluginFile};
    for (const Ingredient &ingredient : ingredients) {
        const QString value = textOf(ingredient.value);
        if (!value.isEmpty()) {
            words << QStringLiteral("--set") << ingredient.name + QLatin1Char('=') + value;
        }
    }
    words << QStringLiteral("build");
    QStringList quoted;
    for (const QString &word : qAsConst(words)) {
        quoted << shellQuoted(word);
    }
    return quoted.join(QLatin1Char(' '));
}
