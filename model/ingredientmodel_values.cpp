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
    for (int groupRow = 0; groupRow < rootItem->childCount(); ++groupRow) {
        const IngredientItem *group = rootItem->child(groupRow);
        const QString groupName = group->data(0).toString();
        if (!groupIndexes.contains(groupName)) {
            IngredientIndex *position = new IngredientIndex;
            position->groupRow = groupRow;
            groupIndexes.insert(groupName, position);
        }
        for (int ingredientRow = 0; ingredientRow < group->childCount(); ++ingredientRow) {
            const QString ingredientName = group->child(ingredientRow)->data(0).toString();
            if (!ingredientIndexes.contains(ingredientName)) {
                IngredientIndex *position = new IngredientIndex;
                position->groupRow = groupRow;
                position->ingredientRow = ingredientRow;
                ingredientIndexes.insert(ingredientName, position);
            }
        }
    }
}

/// The index of a group's name cell; invalid, with an error message, when there is no such group.
QModelIndex IngredientModel::groupIndex(const QString &groupName)
{
    const IngredientIndex *position = groupIndexes.value(groupName);
    if (!position) {
        emit errorMessage(QString::fromLatin1("Could not find group named: %1").arg(groupName));
        return QModelIndex();
    }
    return checkedIndex(position->groupRow, 0, rootItem->child(position->groupRow));
}

/// The index of an ingredient's cell; invalid, with an error message, when there is none.
QModelIndex IngredientModel::ingredientIndex(const QString &ingredientName, int column)
{
    const IngredientIndex *position = ingredientIndexes.value(ingredientName);
    if (!position) {
        emit errorMessage(
            QString::fromLatin1("Could not find ingredient named: %1").arg(ingredientName));
        return QModelIndex();
    }
    IngredientItem *group = rootItem->child(position->groupRow);
    return checkedIndex(position->ingredientRow, column, group->child(position->ingredientRow));
}

QModelIndex IngredientModel::checkedIndex(int row, int column, IngredientItem *item)
{
    const QModelIndex cell = createIndex(row, column, item);
    if (!cell.isValid()) {
        emit errorMessage(QLatin1String("Requested index is invalid"));
    }
    return cell;
}

/// Finds a cell by names; invalid when a name is unknown. Each unknown name is reported, the
/// ingredient's first.
QModelIndex IngredientModel::cellIndex(const QString &ingredientName, const QString &columnName)
{
    const int column = columnIndexes.value(columnName, -1);
    if (column >= 0) {
        return ingredientIndex(ingredientName, column);
    }
    ingredientIndex(ingredientName, 0);
    emit errorMessage(QString::fromLatin1("Could not find column named: %1").arg(columnName));
    return QModelIndex();
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
    if (!(flags(index) & Qt::ItemIsEditable)) {
        return false;
    }
    const QVariant current = data(index, Qt::DisplayRole);
    // Kept: a cell of no known kind becomes invalid and still counts as written.
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
    if (!itemFor(index)->setData(index.column(), replacement)) {
        return false;
    }
    emit dataChanged(index, index);
    return true;
}

QString IngredientModel::getIngredient(const QString &ingredientName, const QString &columnName)
{
    return dataAsString(cellIndex(ingredientName, columnName));
}

void IngredientModel::setIngredient(const QString &ingredientName, const QString &columnName,
                                    const QString &text)
{
    setDataFromString(cellIndex(ingredientName, columnName), text);
}

QStringList IngredientModel::getAllVisibleFileNames(QString groupName)
{
    visibleFileNames.clear();
    for (int groupRow = 0; groupRow < rootItem->childCount(); ++groupRow) {
        const IngredientItem *group = rootItem->child(groupRow);
        if (group->data(0).toString() != groupName) {
            continue;
        }
        for (int ingredientRow = 0; ingredientRow < group->childCount(); ++ingredientRow) {
            const IngredientItem *ingredient = group->child(ingredientRow);
            for (int column = 1; column < ingredient->columnCount(); ++column) {
                const QVariant value = ingredient->data(column);
                const FilePath *filePath = payloadIn<FilePath>(value);
                if (filePath && ingredient->isVisible()) {
                    visibleFileNames.append(filePath->fileName);
                }
            }
        }
    }
    return visibleFileNames;
}
