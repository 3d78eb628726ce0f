// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/configuration.h"

#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "plugin/iingredientmanager.h"

#include <QFile>
#include <QHash>

namespace {

struct Entry {
    QString key;
    QString value;
};

/// The entry in @p line; without a key for comments and everything else that is none.
Entry entryOf(const QString &line)
{
    const QStringList parts = line.trimmed().split(QLatin1Char('='));
    const bool isEntry = parts.count() == 2 && !line.trimmed().startsWith(QLatin1Char('\''));
    return isEntry ? Entry{parts.at(0).trimmed(), parts.at(1).trimmed()} : Entry();
}

/// Whether writing @p value to a configuration and reading it again would change it.
bool isChangedByConfiguration(const QString &value)
{
    return value.contains(QLatin1Char('=')) || value != value.trimmed()
        || QString::fromLocal8Bit(value.toLocal8Bit()) != value;
}

} // namespace

std::optional<QByteArray> configurationOf(const Plugin &plugin)
{
    QFile copy;
    if (!openMemoryFile(&copy)
        || !plugin.ingredientManager()->saveConfigToFile(descriptorPath(copy))) {
        return std::nullopt;
    }
    return copy.readAll();
}

QStringList lossesIn(const QByteArray &configuration, const Ingredients &ingredients)
{
    const QString text = QLatin1Char('\n') + QString::fromLocal8Bit(configuration);
    QStringList losses;
    for (const Ingredient &ingredient : ingredients) {
        const QString value = ingredient.text();
        if (value.isEmpty()) {
            continue;
        }
        if (!text.contains(QLatin1Char('\n') + ingredient.id.key + QLatin1String(" = "))) {
            losses
                << QStringLiteral("\"%1\" is not part of a configuration.").arg(ingredient.id.name);
        } else if (isChangedByConfiguration(value)) {
            losses << QStringLiteral("\"%1\" cannot be read back from a configuration: %2")
                          .arg(ingredient.id.name, value);
        }
    }
    return losses;
}

QStringList ineffectiveEntries(const QByteArray &loaded, const QByteArray &written,
                               const Ingredients &ingredients)
{
    QHash<QString, QString> fixedValues;
    const QStringList writtenLines
        = QString::fromLocal8Bit(written).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : writtenLines) {
        const Entry entry = entryOf(line);
        fixedValues.insert(entry.key, entry.value);
    }
    QStringList remarks;
    const QStringList lines = QString::fromLocal8Bit(loaded).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.count(); ++i) {
        const Entry entry = entryOf(lines.at(i));
        if (entry.key.isEmpty() || findByKey(ingredients, entry.key)) {
            continue;
        }
        const auto fixed = fixedValues.constFind(entry.key);
        if (fixed == fixedValues.constEnd()) {
            remarks << QStringLiteral("line %1: no ingredient has the key \"%2\"")
                           .arg(QString::number(i + 1), entry.key);
        } else if (*fixed != entry.value) {
            remarks << QStringLiteral("line %1: %2 is \"%3\", but a build always uses \"%4\"")
                           .arg(QString::number(i + 1), entry.key, entry.value, *fixed);
        }
    }
    return remarks;
}
