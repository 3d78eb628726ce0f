// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QModelIndex>
#include <QString>
#include <QVariant>
#include <QVector>

class QAbstractItemModel;

/// One row of the ingredient tree, as a host reads it.
struct Ingredient {
    QString group;
    QString name;
    QString key;
    QModelIndex valueIndex; ///< The cell to edit.
    QVariant value;         ///< A FilePath, a Choice or a text.
    bool isVisible = true;
};

/// What kind of value a cell holds.
enum class ValueKind { File, Choice, Text, Other };

ValueKind kindOf(const QVariant &value);
/// The value in one line: the path, the picked entry or the text; empty for any other kind.
QString textOf(const QVariant &value);

/// What @p value must be, in words: "input file, required, 31120 bytes", or the choices there are.
QString demandOf(const QVariant &value);
/// A size in bytes, with the unit.
QString sizeText(qint64 size);

/// All ingredients in tree order, with the columns found by their headers.
QVector<Ingredient> ingredientsOf(const QAbstractItemModel &model);

/// The ingredient that the build writes; one with an invalid index when there is none.
Ingredient outputIngredient(const QAbstractItemModel &model);

/// Sets one ingredient, found by display name or else by key. A relative path is taken against the
/// current folder, since the stitcher runs in another one.
/// @return an empty text, or why nothing was set
QString setIngredientValue(QAbstractItemModel *model, const QString &nameOrKey,
                           const QString &text);

/// Makes every relative path in the tree absolute, against the current folder.
void makePathsAbsolute(QAbstractItemModel *model);
