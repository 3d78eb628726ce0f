// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Reading an ingredient tree and the values in it.

#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

class QAbstractItemModel;

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

/// Identifies an ingredient of a target, also after the plug-in's objects were replaced.
struct IngredientId {
    QString name; ///< Display name.
    QString key;  ///< Name in the stitcher's configuration.

    /// Whether it identifies none.
    bool isEmpty() const;
    /// Whether both identify the same ingredient.
    bool operator==(const IngredientId &other) const;
    /// Whether they identify different ones.
    bool operator!=(const IngredientId &other) const;
};

/// For QHash and QSet.
uint qHash(const IngredientId &id, uint seed = 0);

/// One row of the ingredient tree.
struct Ingredient {
    IngredientId id;       ///< Its name and key.
    QString group;         ///< Display name of its group.
    QModelIndex index;     ///< The cell that holds the value.
    QVariant value;        ///< A FilePath, a Choice or a text.
    bool isVisible = true; ///< Whether views should show the row.

    /// The value in one line, as textOf() returns it.
    QString text() const;
    /// Whether it is a file that a build reads.
    bool isInputFile() const;
    /// Whether it is the file that a build writes.
    bool isOutputFile() const;
    /// Whether the plug-in loads a file as soon as it becomes the value.
    bool isDataFile() const;
};

/// Ingredients in tree order.
using Ingredients = QVector<Ingredient>;

/// All ingredients in tree order, with the columns found by their headers.
Ingredients ingredientsOf(const QAbstractItemModel &model);

/// The ingredient with that name and key.
std::optional<Ingredient> findIngredient(const Ingredients &ingredients, const IngredientId &id);
/// The ingredient with that display name or, if none has it, that key.
std::optional<Ingredient> findIngredient(const Ingredients &ingredients, const QString &nameOrKey);
/// The ingredient with that key.
std::optional<Ingredient> findByKey(const Ingredients &ingredients, const QString &key);
/// The ingredient that a build writes.
std::optional<Ingredient> outputIngredient(const Ingredients &ingredients);

/// The file that is the value of @p ingredient, if any.
QStringList filesOf(const Ingredient &ingredient);

/// The absolute paths of all input files that are set, each once. Hidden ingredients are included,
/// since they are part of a configuration too.
QStringList inputFilesOf(const Ingredients &ingredients);

/// Converts @p text to a value of the kind of @p current; a path is used as it is.
/// @return an empty text, or why there is no such value
QString valueFromText(const QString &text, const QVariant &current, QVariant *value);
