// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientviewmodel.h"

#include "host/core/ingredients.h"

#include <QApplication>
#include <QStyle>

IngredientViewModel::IngredientViewModel(QObject *parent)
    : QIdentityProxyModel(parent)
{
}

QVariant IngredientViewModel::data(const QModelIndex &index, int role) const
{
    QVariant value = QIdentityProxyModel::data(index, Qt::DisplayRole);
    const bool isFailed = index.column() == 0 && failuresByName.contains(value.toString());
    switch (role) {
    case Qt::DisplayRole:
        return kindOf(value) == ValueKind::Other ? value : textOf(value);
    case Qt::EditRole:
        return value;
    case Qt::ToolTipRole:
        return toolTipOf(index);
    case Qt::DecorationRole:
        return isFailed ? QApplication::style()->standardIcon(QStyle::SP_MessageBoxCritical)
                        : QVariant();
    case Qt::AccessibleTextRole:
        return isFailed ? tr("%1, check failed").arg(value.toString()) : QVariant();
    default:
        return QIdentityProxyModel::data(index, role);
    }
}

bool IngredientViewModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    emit editStarted();
    const bool isSet = QIdentityProxyModel::setData(index, value, role);
    emit editFinished();
    return isSet;
}

QString IngredientViewModel::toolTipOf(const QModelIndex &index) const
{
    if (!index.parent().isValid()) {
        return {};
    }
    QStringList lines;
    for (int column = 1; column < columnCount(index.parent()); ++column) {
        const QVariant value = index.sibling(index.row(), column).data(Qt::EditRole);
        if (kindOf(value) == ValueKind::File || kindOf(value) == ValueKind::Choice) {
            lines << demandOf(value) << textOf(value);
        }
    }
    lines += failuresByName.value(index.sibling(index.row(), 0).data().toString());
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

void IngredientViewModel::setFailures(const QVector<CheckResult> &failures)
{
    failuresByName.clear();
    for (const CheckResult &failure : failures) {
        failuresByName[failure.ingredientName] << failure.details;
    }
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex group = index(row, 0);
        if (rowCount(group) > 0) {
            emit dataChanged(index(0, 0, group),
                             index(rowCount(group) - 1, columnCount(group) - 1, group));
        }
    }
}

QModelIndex IngredientViewModel::indexOf(const QString &ingredientName) const
{
    for (int groupRow = 0; groupRow < rowCount(); ++groupRow) {
        const QModelIndex group = index(groupRow, 0);
        for (int row = 0; row < rowCount(group); ++row) {
            const QModelIndex ingredient = index(row, 0, group);
            if (ingredient.data().toString() == ingredientName) {
                return ingredient;
            }
        }
    }
    return {};
}
