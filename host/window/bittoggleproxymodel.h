// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIdentityProxyModel>

/// Shows bit cells of a data view as check boxes with a text, since the outline of an empty box is
/// invisible on a dark background with some styles, and leaves all other cells unchanged.
class BitToggleProxyModel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit BitToggleProxyModel(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
};
