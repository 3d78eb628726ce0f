// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientmodel.h"

#include "model/ingredientcheck.h"
#include "model/ingredientitem.h"

QList<CheckResult> IngredientModel::checkAllFiles()
{
    checkResults.clear();
    const QModelIndexList cells = ingredientCells();
    for (const QModelIndex &cell : cells) {
        const IngredientItem *ingredient = itemFor(cell);
        if (!ingredient->isVisible()) {
            continue;
        }
        const QString name = cell.data().toString();
        const QList<FilePath> files = filesOf(*ingredient);
        for (const FilePath &file : files) {
            checkResults += checkFile(name, file);
        }
    }
    return checkResults;
}

QList<CheckResult> IngredientModel::checkFile(const QString &ingredientName, const FilePath &file)
{
    QList<CheckResult> results;
    if (!file.isRequired && file.fileName.trimmed().isEmpty()) {
        return results;
    }
    if (!file.isInput) {
        results.append(IngredientCheck::directoryForFileExists(ingredientName, file.fileName));
        return results;
    }
    results.append(IngredientCheck::fileExists(ingredientName, file.fileName));
    if (file.expectedSize >= 1 && file.expectedSize == file.exactSize) {
        results.append(
            IngredientCheck::exactFileSize(ingredientName, file.fileName, file.expectedSize));
    }
    return results;
}
