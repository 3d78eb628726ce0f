// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Reading and setting the values of an ingredient tree.

#include <QModelIndex>
#include <QString>
#include <QVariant>
#include <QVector>

class QAbstractItemModel;

/// One row of the ingredient tree.
struct Ingredient {
    QString group;          ///< Display name of its group.
    QString name;           ///< Display name.
    QString key;            ///< Name in the stitcher's configuration.
    QModelIndex valueIndex; ///< The cell to edit.
    QVariant value;         ///< A FilePath, a Choice or a text.
    bool isVisible = true;  ///< Whether views should show the row.
};

/// What kind of value a cell holds.
enum class ValueKind { File, Choice, Text, Other };

/// The kind of @p value.
ValueKind kindOf(const QVariant &value);
/// The kind as reports and project files name it: "file", "choice", "text" or "other".
QString kindName(ValueKind kind);
/// The value in one line: the path, the chosen entry or the text; empty for any other kind.
QString textOf(const QVariant &value);

/// What @p value must be, in words: "input file, required, 31120 bytes", or the list of choices.
QString demandOf(const QVariant &value);
/// A size in bytes, with the unit.
QString sizeText(qint64 size);

/// All ingredients in tree order, with the columns found by their headers.
QVector<Ingredient> ingredientsOf(const QAbstractItemModel &model);

/// The ingredient that a build writes; one with an invalid index when there is none.
Ingredient outputIngredient(const QAbstractItemModel &model);
/// The same among @p ingredients.
Ingredient outputIngredient(const QVector<Ingredient> &ingredients);

/// The ingredient with that display name or, if none has it, that key; one with an invalid index
/// when there is none.
Ingredient findIngredient(const QAbstractItemModel &model, const QString &nameOrKey);

/// The ingredient with that display name and key; one with an invalid index when there is none.
Ingredient findIngredient(const QVector<Ingredient> &ingredients, const QString &name,
                          const QString &key);

/// The absolute paths of all input files that are set. Hidden ingredients are included, since they
/// are part of a configuration too.
QStringList inputFilesOf(const QVector<Ingredient> &ingredients);

/// Whether the plug-in loads a file as soon as it becomes the value of @p ingredient.
bool isDataFile(const Ingredient &ingredient);

/// Converts @p text to a value of the kind of @p current; a path is used as it is.
/// @return an empty text, or why there is no such value
QString valueFromText(const QString &text, const QVariant &current, QVariant *value);

/// Sets one ingredient, found by display name or else by key. A relative path is resolved against
/// the current directory, since the stitcher runs in another one.
/// @return an empty text, or why nothing was set
QString setIngredientValue(QAbstractItemModel *model, const QString &nameOrKey,
                           const QString &text);
/// Sets @p ingredient in the same way.
QString setIngredientValue(QAbstractItemModel *model, const Ingredient &ingredient,
                           const QString &text);

/// Makes every relative path in the tree absolute, against the current directory.
void makePathsAbsolute(QAbstractItemModel *model);
