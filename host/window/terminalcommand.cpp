// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/terminalcommand.h"

#include "host/core/paths.h"

#include <QStringList>

QString terminalCommand(const Ingredients &ingredients, const QString &pluginFile)
{
    QStringList words{QStringLiteral("loomwright"), QStringLiteral("--plugin"), pluginFile};
    for (const Ingredient &ingredient : ingredients) {
        const QString value = ingredient.text();
        if (!value.isEmpty()) {
            words << QStringLiteral("--set") << ingredient.id.name + QLatin1Char('=') + value;
        }
    }
    words << QStringLiteral("build");
    QStringList quoted;
    for (const QString &word : qAsConst(words)) {
        quoted << shellQuoted(word);
    }
    return quoted.join(QLatin1Char(' '));
}
