// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/checkviewmodel.h"

#include "host/window/failurecolor.h"

#include <QApplication>
#include <QStyle>

CheckViewModel::CheckViewModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

QVariant CheckViewModel::data(const QModelIndex &index, int role) const
{
    const bool isPassed = index.sibling(index.row(), 0).isValid()
        && QSortFilterProxyModel::data(index.sibling(index.row(), 0), Qt::DisplayRole).toBool();
    if (role == Qt::DisplayRole && index.column() == 0) {
        return isPassed ? tr("Pass") : tr("Fail");
    }
    if (role == Qt::DecorationRole && index.column() == 0) {
        return QApplication::style()->standardIcon(isPassed ? QStyle::SP_DialogApplyButton
                                                            : QStyle::SP_MessageBoxCritical);
    }
    if (role == Qt::ForegroundRole && !isPassed) {
        return failureColor(QApplication::palette());
    }
    return QSortFilterProxyModel::data(index, role);
}

void CheckViewModel::setFailedFirst(bool isFailedFirst)
{
    sort(isFailedFirst ? 0 : -1);
}

void CheckViewModel::setChecked(bool isChecked)
{
    hasBeenChecked = isChecked;
    invalidateFilter();
}

bool CheckViewModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    return !left.data().toBool() && right.data().toBool();
}

bool CheckViewModel::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    Q_UNUSED(row)
    Q_UNUSED(parent)
    return hasBeenChecked;
}
