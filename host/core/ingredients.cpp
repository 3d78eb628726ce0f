// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/ingredients.h"

#include "host/core/paths.h"
#include "model/choice.h"
#include "model/filepath.h"
#include "model/modelcolumns.h"

#include <QAbstractItemModel>
#include <QHash>

#include <algorithm>

namespace {

/// The column with the header @p header, or -1.
int columnNamed(const QAbstractItemModel &model, const QString &header)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        if (model.headerData(column, Qt::Horizontal).toString() == header) {
            return column;
        }
    }
    return -1;
}

template <typename Predicate>
std::optional<Ingredient> findIf(const Ingredients &ingredients, Predicate predicate)
{
    const auto found = std::find_if(ingredients.begin(), ingredients.end(), predicate);
    return found == ingredients.end() ? std::nullopt : std::make_optional(*found);
}

} // namespace

ValueKind kindOf(const QVariant &value)
{
    if (value.canConvert<FilePath>()) {
        return ValueKind::File;
    }
    if (value.canConvert<Choice>()) {
        return ValueKind::Choice;
    }
    return value.type() == QVariant::String ? ValueKind::Text : ValueKind::Other;
}

QString kindName(ValueKind kind)
{
    switch (kind) {
    case ValueKind::File:
        return QStringLiteral("file");
    case ValueKind::Choice:
        return QStringLiteral("choice");
    case ValueKind::Text:
        return QStringLiteral("text");
    case ValueKind::Other:
        break;
    }
    return QStringLiteral("other");
}

QString textOf(const QVariant &value)
{
    switch (kindOf(value)) {
    case ValueKind::File:
        return value.value<FilePath>().fileName;
    case ValueKind::Choice: {
        const auto choice = value.value<Choice>();
        return choice.choices.value(choice.selectedIndex);
    }
    case ValueKind::Text:
        return value.toString();
    case ValueKind::Other:
        break;
    }
    return {};
}

QString sizeText(qint64 size)
{
    return QStringLiteral("%1 bytes").arg(size);
}

QString demandOf(const QVariant &value)
{
    switch (kindOf(value)) {
    case ValueKind::File: {
        const auto file = value.value<FilePath>();
        QStringList demands;
        demands << (file.isInput ? QStringLiteral("input file") : QStringLiteral("output file"))
                << (file.isRequired ? QStringLiteral("required") : QStringLiteral("optional"));
        if (file.exactSize > 0) {
            demands << sizeText(file.exactSize);
        }
        demands << file.fileFilter.section(QLatin1String(";;"), 0, 0);
        demands.removeAll(QString());
        return demands.join(QStringLiteral(", "));
    }
    case ValueKind::Choice:
        return QStringLiteral("one of: ")
            + value.value<Choice>().choices.join(QStringLiteral(", "));
    case ValueKind::Text:
        return QStringLiteral("text");
    case ValueKind::Other:
        break;
    }
    return {};
}

bool IngredientId::isEmpty() const
{
    return name.isEmpty() && key.isEmpty();
}

bool IngredientId::operator==(const IngredientId &other) const
{
    return name == other.name && key == other.key;
}

bool IngredientId::operator!=(const IngredientId &other) const
{
    return !(*this == other);
}

uint qHash(const IngredientId &id, uint seed)
{
    return qHash(qMakePair(id.name, id.key), seed);
}

QString Ingredient::text() const
{
    return textOf(value);
}

bool Ingredient::isInputFile() const
{
    return kindOf(value) == ValueKind::File && value.value<FilePath>().isInput;
}

bool Ingredient::isOutputFile() const
{
    return kindOf(value) == ValueKind::File && !value.value<FilePath>().isInput;
}

bool Ingredient::isDataFile() const
{
    return kindOf(value) == ValueKind::File && value.value<FilePath>().broadcastChanges;
}

Ingredients ingredientsOf(const QAbstractItemModel &model)
{
    const int valueColumn = columnNamed(model, QStringLiteral("Value"));
    const int keyColumn = columnNamed(model, QStringLiteral("Key"));
    Ingredients ingredients;
    for (int groupRow = 0; groupRow < model.rowCount(); ++groupRow) {
        const QModelIndex group = model.index(groupRow, 0);
        for (int row = 0; row < model.rowCount(group); ++row) {
            const QModelIndex name = model.index(row, 0, group);
            Ingredient ingredient;
            ingredient.id.name = name.data().toString();
            ingredient.id.key = textOf(model.index(row, keyColumn, group).data());
            ingredient.group = group.data().toString();
            ingredient.index = model.index(row, valueColumn, group);
            ingredient.value = ingredient.index.data();
            ingredient.isVisible = name.data(VisibilityRole).toString() != QLatin1String("hidden");
            ingredients.append(ingredient);
        }
    }
    return ingredients;
}

std::optional<Ingredient> findIngredient(const Ingredients &ingredients, const IngredientId &id)
{
    return findIf(ingredients, [&id](const Ingredient &each) { return each.id == id; });
}

std::optional<Ingredient> findIngredient(const Ingredients &ingredients, const QString &nameOrKey)
{
    const auto named
        = findIf(ingredients, [&](const Ingredient &each) { return each.id.name == nameOrKey; });
    return named ? named : findByKey(ingredients, nameOrKey);
}

std::optional<Ingredient> findByKey(const Ingredients &ingredients, const QString &key)
{
    return findIf(ingredients, [&key](const Ingredient &each) { return each.id.key == key; });
}

std::optional<Ingredient> outputIngredient(const Ingredients &ingredients)
{
    return findIf(ingredients, [](const Ingredient &each) { return each.isOutputFile(); });
}

QStringList filesOf(const Ingredient &ingredient)
{
    const bool isFile = kindOf(ingredient.value) == ValueKind::File && !ingredient.text().isEmpty();
    return isFile ? QStringList(ingredient.text()) : QStringList();
}

QStringList inputFilesOf(const Ingredients &ingredients)
{
    QStringList files;
    for (const Ingredient &ingredient : ingredients) {
        if (ingredient.isInputFile() && !ingredient.text().isEmpty()) {
            files.append(absolutePath(ingredient.text()));
        }
    }
    files.removeDuplicates();
    return files;
}

QString valueFromText(const QString &text, const QVariant &current, QVariant *value)
{
    switch (kindOf(current)) {
    case ValueKind::File: {
        auto file = current.value<FilePath>();
        file.fileName = text;
        value->setValue(file);
        return {};
    }
    case ValueKind::Choice: {
        auto choice = current.value<Choice>();
        choice.selectedIndex = choice.choices.lastIndexOf(text);
        value->setValue(choice);
        return choice.selectedIndex >= 0
            ? QString()
            : QStringLiteral("\"%1\" is not one of the choices: %2.")
                  .arg(text, choice.choices.join(QStringLiteral(", ")));
    }
    case ValueKind::Text:
        *value = text;
        return {};
    case ValueKind::Other:
        break;
    }
    return QStringLiteral("This kind of value cannot be set from a text.");
}
