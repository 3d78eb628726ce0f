// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientmodel.h"

#include "model/ingredientitem.h"
#include "model/payload.h"

void IngredientModel::clearIndexes()
{
    qDeleteAll(ingredientIndexes);
    ingredientIndexes.clear();
    qDeleteAll(groupIndexes);
    groupIndexes.clear();
}

void IngredientModel::generateIndexes()
{
    clearIndexes();
    for (int row = 0; row < rootItem->childCount(); ++row) {
        const QString name = rootItem->child(row)->data(IngredientColumn::Name).toString();
        if (!groupIndexes.contains(name)) {
            groupIndexes.insert(name, new IngredientIndex(row));
        }
    }
    const QModelIndexList cells = ingredientCells();
    for (const QModelIndex &cell : cells) {
        const QString name = cell.data().toString();
        if (!ingredientIndexes.contains(name)) {
            ingredientIndexes.insert(name, new IngredientIndex(cell.parent().row(), cell.row()));
        }
    }
}

void IngredientModel::generateColumnIndexes()
{
    columnIndexes.clear();
    for (int column = 0; column < rootItem->columnCount(); ++column) {
        const QString header = rootItem->data(column).toString();
        if (!columnIndexes.contains(header)) {
            columnIndexes.insert(header, column);
        }
    }
}

/// The position of a group; null, with an error message, when there is no such group.
const IngredientIndex *IngredientModel::findGroup(const QString &groupName)
{
    const IngredientIndex *position = groupIndexes.value(groupName);
    if (!position) {
        emit errorMessage(QString::fromLatin1("Could not find group named: %1").arg(groupName));
    }
    return position;
}

/// The position of an ingredient; null, with an error message, when there is no such ingredient.
const IngredientIndex *IngredientModel::findIngredient(const QString &ingredientName)
{
    const IngredientIndex *position = ingredientIndexes.value(ingredientName);
    if (!position) {
        emit errorMessage(
            QString::fromLatin1("Could not find ingredient named: %1").arg(ingredientName));
    }
    return position;
}

/// The number of a column; negative, with an error message, when there is no such column.
int IngredientModel::findColumn(const QString &columnName)
{
    const int column = columnIndexes.value(columnName, -1);
    if (column < 0) {
        emit errorMessage(QString::fromLatin1("Could not find column named: %1").arg(columnName));
    }
    return column;
}

// The following return an invalid index, with an error message, when a name is unknown.

QModelIndex IngredientModel::groupCell(const QString &groupName)
{
    const IngredientIndex *position = findGroup(groupName);
    return position ? checkedCell(position->groupRow, IngredientColumn::Name,
                                  rootItem->child(position->groupRow))
                    : QModelIndex();
}

QModelIndex IngredientModel::ingredientCell(const QString &ingredientName)
{
    const IngredientIndex *position = findIngredient(ingredientName);
    return position ? cellAt(*position, IngredientColumn::Name) : QModelIndex();
}

QModelIndex IngredientModel::ingredientCell(const QString &ingredientName,
                                            const QString &columnName)
{
    const IngredientIndex *position = findIngredient(ingredientName);
    const int column = findColumn(columnName);
    return position && column >= 0 ? cellAt(*position, column) : QModelIndex();
}

QModelIndex IngredientModel::cellAt(const IngredientIndex &position, int column)
{
    const IngredientItem *group = rootItem->child(position.groupRow);
    return checkedCell(position.ingredientRow, column, group->child(position.ingredientRow));
}

QModelIndex IngredientModel::checkedCell(int row, int column, IngredientItem *item)
{
    const QModelIndex cell = createIndex(row, column, item);
    if (!cell.isValid()) {
        emit errorMessage(QLatin1String("Requested index is invalid"));
    }
    return cell;
}

QString IngredientModel::dataAsString(const QModelIndex &index) const
{
    const QVariant value = data(index, Qt::DisplayRole);
    if (const FilePath *filePath = payloadIn<FilePath>(value)) {
        return filePath->fileName;
    }
    if (const Choice *choice = payloadIn<Choice>(value)) {
        return choice->choices.value(choice->selectedIndex);
    }
    return value.type() == QVariant::String ? value.toString() : QString();
}

bool IngredientModel::setDataFromString(const QModelIndex &index, const QString &text)
{
    const QVariant current = data(index, Qt::DisplayRole);
    // Compat: a cell of no known kind becomes invalid and still counts as written.
    QVariant replacement;
    if (const FilePath *filePath = payloadIn<FilePath>(current)) {
        FilePath edited = *filePath;
        edited.fileName = text;
        replacement = QVariant::fromValue(edited);
    } else if (const Choice *choice = payloadIn<Choice>(current)) {
        Choice edited = *choice;
        edited.selectedIndex = choice->choices.lastIndexOf(text);
        if (edited.selectedIndex < 0) {
            return false;
        }
        replacement = QVariant::fromValue(edited);
    } else if (current.type() == QVariant::String) {
        replacement = text;
    }
    return setData(index, replacement, Qt::EditRole);
}

QString IngredientModel::getIngredient(const QString &ingredientName, const QString &columnName)
{
    return dataAsString(ingredientCell(ingredientName, columnName));
}

void IngredientModel::setIngredient(const QString &ingredientName, const QString &columnName,
                                    const QString &text)
{
    setDataFromString(ingredientCell(ingredientName, columnName), text);
}

QStringList IngredientModel::getAllVisibleFileNames(QString groupName)
{
    visibleFileNames.clear();
    const QModelIndexList cells = ingredientCells();
    for (const QModelIndex &cell : cells) {
        const IngredientItem *ingredient = itemFor(cell);
        if (cell.parent().data().toString() != groupName || !ingredient->isVisible()) {
            continue;
        }
        const QList<FilePath> files = filesOf(*ingredient);
        for (const FilePath &file : files) {
            visibleFileNames.append(file.fileName);
        }
    }
    return visibleFileNames;
}

/// The values of all file cells of an ingredient, in column order.
QList<FilePath> IngredientModel::filesOf(const IngredientItem &ingredient)
{
    QList<FilePath> files;
    for (int column = IngredientColumn::Name + 1; column < ingredient.columnCount(); ++column) {
        const QVariant value = ingredient.data(column);
        if (const FilePath *file = payloadIn<FilePath>(value)) {
            files.append(*file);
        }
    }
    return files;
}
