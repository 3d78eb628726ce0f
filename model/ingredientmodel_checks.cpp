// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientmodel.h"

#include "model/ingredientcheck.h"
#include "model/ingredientitem.h"
#include "model/payload.h"

QList<CheckResult> IngredientModel::checkAllFiles()
{
    checkResults.clear();
    for (int groupRow = 0; groupRow < rootItem->childCount(); ++groupRow) {
        const IngredientItem *group = rootItem->child(groupRow);
        for (int ingredientRow = 0; ingredientRow < group->childCount(); ++ingredientRow) {
            checkResults += checkIngredient(*group->child(ingredientRow));
        }
    }
    return checkResults;
}

QList<CheckResult> IngredientModel::checkIngredient(const IngredientItem &ingredient)
{
    QList<CheckResult> results;
    if (!ingredient.isVisible()) {
        return results;
    }
    const QString name = ingredient.data(0).toString();
    for (int column = 1; column < ingredient.columnCount(); ++column) {
        const QVariant value = ingredient.data(column);
        const FilePath *payload = payloadIn<FilePath>(value);
        if (!payload) {
            continue;
        }
        const FilePath &file = *payload;
        if (!file.isRequired && file.fileName.trimmed().isEmpty()) {
            continue;
        }
        if (!file.isInput) {
            results.append(IngredientCheck::directoryForFileExists(name, file.fileName));
            continue;
        }
        results.append(IngredientCheck::fileExists(name, file.fileName));
        if (file.expectedSize >= 1 && file.expectedSize == file.exactSize) {
            results.append(IngredientCheck::exactFileSize(name, file.fileName, file.expectedSize));
        }
    }
    return results;
}
