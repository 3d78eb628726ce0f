// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filecheck.h"

#include "host/core/filestate.h"
#include "model/filepath.h"
#include "model/modelcolumns.h"

#include <QAbstractItemModel>
#include <QSet>

namespace {

Problem problemOf(const FileCheck &check)
{
    Problem problem{ProblemKind::Check, Severity::Error, check.details, check.ingredient.id,
                    filesOf(check.ingredient)};
    if (check.expectedSize >= 0) {
        problem.required = sizeText(check.expectedSize);
        problem.requiredSize = check.expectedSize;
        problem.actual = check.actualSize >= 0 ? sizeText(check.actualSize) : QString();
        problem.actualSize = check.actualSize;
    }
    return problem;
}

FileCheck checkOf(const Ingredient &ingredient)
{
    FileCheck check;
    check.ingredient = ingredient;
    if (ingredient.value.value<FilePath>().exactSize > 0) {
        check.expectedSize = ingredient.value.value<FilePath>().exactSize;
    }
    const FileState state = FileState::of(ingredient.text());
    if (state.isRegular()) {
        check.actualSize = state.size;
    }
    return check;
}

} // namespace

QVector<FileCheck> checksIn(const QAbstractItemModel &table, const Ingredients &ingredients)
{
    // The table only has names, in tree order, and a name may occur twice.
    QVector<FileCheck> checks;
    int position = 0;
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString name = table.index(row, CheckColumn::Ingredient).data().toString();
        int candidate = position;
        while (candidate < ingredients.count() && ingredients.at(candidate).id.name != name) {
            ++candidate;
        }
        const bool found = candidate < ingredients.count();
        position = found ? candidate : position;
        FileCheck check = checkOf(found ? ingredients.at(candidate) : Ingredient());
        check.ingredient.id.name = name;
        check.passed = table.index(row, CheckColumn::Passed).data().toBool();
        check.details = table.index(row, CheckColumn::Details).data().toString();
        checks.append(check);
    }
    return checks;
}

Problems failuresIn(const QVector<FileCheck> &checks)
{
    QSet<IngredientId> failed;
    Problems problems;
    for (const FileCheck &check : checks) {
        if (!check.passed && !failed.contains(check.ingredient.id)) {
            failed.insert(check.ingredient.id);
            problems.append(problemOf(check));
        }
    }
    return problems;
}
