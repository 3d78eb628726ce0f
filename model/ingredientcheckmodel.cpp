// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientcheckmodel.h"

#include "model/modelcolumns.h"

IngredientCheckModel::IngredientCheckModel(QObject *parent)
    : QAbstractTableModel(parent)
    , headers(QStringList() << QLatin1String("") << QLatin1String("Ingredient")
                            << QLatin1String("Details"))
{
    results.append(CheckResult());
}

int IngredientCheckModel::rowCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return results.count();
}

int IngredientCheckModel::columnCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return headers.count();
}

QVariant IngredientCheckModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole || index.row() >= results.count()) {
        return QVariant();
    }
    const CheckResult &result = results.at(index.row());
    switch (index.column()) {
    case CheckColumn::Passed:
        return result.passed;
    case CheckColumn::Ingredient:
        return result.ingredientName;
    default:
        return result.details;
    }
}

QVariant IngredientCheckModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0
        || section >= headers.count()) {
        return QVariant();
    }
    return headers.at(section);
}

Qt::ItemFlags IngredientCheckModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled : Qt::NoItemFlags;
}

void IngredientCheckModel::setData(const QList<CheckResult> &newResults)
{
    beginResetModel();
    results = newResults;
    checkCount = rowCount();
    passCount = 0;
    failCount = 0;
    for (const CheckResult &result : newResults) {
        ++(result.passed ? passCount : failCount);
    }
    endResetModel();
}

CheckResultSummary IngredientCheckModel::checkResultSummary() const
{
    CheckResultSummary summary;
    summary.checkCount = checkCount;
    summary.passCount = passCount;
    summary.failCount = failCount;
    return summary;
}
