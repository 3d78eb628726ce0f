// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/ingredients.h"

#include "host/core/files.h"
#include "model/choice.h"
#include "model/filepath.h"
#include "model/modelcolumns.h"

#include <QAbstractItemModel>
#include <QCoreApplication>

#include <algorithm>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Ingredients", text);
}

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

bool setPath(QAbstractItemModel *model, const Ingredient &ingredient, const QString &path)
{
    FilePath file = ingredient.value.value<FilePath>();
    file.fileName = path;
    return model->setData(ingredient.valueIndex, QVariant::fromValue(file), Qt::EditRole);
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

QVector<Ingredient> ingredientsOf(const QAbstractItemModel &model)
{
    const int valueColumn = columnNamed(model, QStringLiteral("Value"));
    const int keyColumn = columnNamed(model, QStringLiteral("Key"));
    QVector<Ingredient> ingredients;
    for (int groupRow = 0; groupRow < model.rowCount(); ++groupRow) {
        const QModelIndex group = model.index(groupRow, 0);
        for (int row = 0; row < model.rowCount(group); ++row) {
            Ingredient ingredient;
            ingredient.group = group.data().toString();
            ingredient.name = model.index(row, 0, group).data().toString();
            ingredient.key = textOf(model.index(row, keyColumn, group).data());
            ingredient.valueIndex = model.index(row, valueColumn, group);
            ingredient.value = ingredient.valueIndex.data();
            ingredient.isVisible = model.index(row, 0, group).data(VisibilityRole).toString()
                != QLatin1String("hidden");
            ingredients.append(ingredient);
        }
    }
    return ingredients;
}

Ingredient outputIngredient(const QAbstractItemModel &model)
{
    return outputIngredient(ingredientsOf(model));
}

Ingredient outputIngredient(const QVector<Ingredient> &ingredients)
{
    const auto output
        = std::find_if(ingredients.begin(), ingredients.end(), [](const Ingredient &ingredient) {
              return kindOf(ingredient.value) == ValueKind::File
                  && !ingredient.value.value<FilePath>().isInput;
          });
    return output == ingredients.end() ? Ingredient() : *output;
}

Ingredient findIngredient(const QAbstractItemModel &model, const QString &nameOrKey)
{
    const QVector<Ingredient> ingredients = ingredientsOf(model);
    auto found = std::find_if(ingredients.begin(), ingredients.end(),
                              [&](const Ingredient &each) { return each.name == nameOrKey; });
    if (found == ingredients.end()) {
        found = std::find_if(ingredients.begin(), ingredients.end(),
                             [&](const Ingredient &each) { return each.key == nameOrKey; });
    }
    return found == ingredients.end() ? Ingredient() : *found;
}

Ingredient findIngredient(const QVector<Ingredient> &ingredients, const QString &name,
                          const QString &key)
{
    const auto found
        = std::find_if(ingredients.begin(), ingredients.end(), [&](const Ingredient &each) {
              return each.name == name && each.key == key;
          });
    return found == ingredients.end() ? Ingredient() : *found;
}

QStringList inputFilesOf(const QVector<Ingredient> &ingredients)
{
    QStringList files;
    for (const Ingredient &ingredient : ingredients) {
        const QString file = textOf(ingredient.value);
        if (kindOf(ingredient.value) == ValueKind::File && !file.isEmpty()
            && ingredient.value.value<FilePath>().isInput) {
            files.append(absolutePath(file));
        }
    }
    return files;
}

bool isDataFile(const Ingredient &ingredient)
{
    return ingredient.value.canConvert<FilePath>()
        && ingredient.value.value<FilePath>().broadcastChanges;
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
            : tr("\"%1\" is not one of the choices: %2.")
                  .arg(text, choice.choices.join(QStringLiteral(", ")));
    }
    case ValueKind::Text:
        *value = text;
        return {};
    case ValueKind::Other:
        break;
    }
    return tr("This kind of value cannot be set from a text.");
}

QString setIngredientValue(QAbstractItemModel *model, const QString &nameOrKey, const QString &text)
{
    const Ingredient ingredient = findIngredient(*model, nameOrKey);
    return ingredient.valueIndex.isValid()
        ? setIngredientValue(model, ingredient, text)
        : tr("No ingredient has the name or key \"%1\".").arg(nameOrKey);
}

QString setIngredientValue(QAbstractItemModel *model, const Ingredient &ingredient,
                           const QString &text)
{
    const bool isFile = kindOf(ingredient.value) == ValueKind::File;
    QVariant value;
    const QString problem
        = valueFromText(isFile ? absolutePath(text) : text, ingredient.value, &value);
    if (!problem.isEmpty()) {
        return ingredient.name + QLatin1String(": ") + problem;
    }
    return model->setData(ingredient.valueIndex, value, Qt::EditRole)
        ? QString()
        : tr("\"%1\" cannot be set.").arg(ingredient.name);
}

void makePathsAbsolute(QAbstractItemModel *model)
{
    for (const Ingredient &ingredient : ingredientsOf(*model)) {
        const QString path = textOf(ingredient.value);
        if (kindOf(ingredient.value) == ValueKind::File && path != absolutePath(path)) {
            setPath(model, ingredient, absolutePath(path));
        }
    }
}
