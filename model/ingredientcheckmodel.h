// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

#include <QAbstractTableModel>
#include <QStringList>

/// The results of the last check run as a table with the columns of ::CheckColumn. It supplies only
/// Qt::DisplayRole: the host decides what a pass or a failure looks like.
///
/// A new table has one empty row, which its summary does not count. Hosts show that row before the
/// first check.
class IngredientCheckModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Creates the table with its empty row.
    explicit IngredientCheckModel(QObject *parent = nullptr);

    /// @name QAbstractTableModel
    /// @{

    /// See QAbstractTableModel.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// @}

    using QAbstractTableModel::setData;
    /// Replaces all rows and counts them.
    void setData(const QList<CheckResult> &newResults);
    /// The counts of the last setData(); all 0 before.
    CheckResultSummary checkResultSummary() const;

private:
    QStringList headers;
    QList<CheckResult> results;
    int checkCount = 0;
    int passCount = 0;
    int failCount = 0;
};
