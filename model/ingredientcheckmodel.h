// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

#include <QAbstractTableModel>
#include <QStringList>

/// The results of the last check run as a table: passed, ingredient, details. It supplies the
/// display role alone; how a pass or a failure looks is the host's business.
///
/// A new table holds one placeholder row while its summary counts nothing; hosts show that row
/// before the first check.
class IngredientCheckModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Creates the table with its placeholder row.
    explicit IngredientCheckModel(QObject *parent = nullptr);

    /// @name What QAbstractTableModel promises
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
    /// Replaces all rows and counts them anew.
    void setData(const QList<CheckResult> &newResults);
    /// The counts of the last setData().
    CheckResultSummary checkResultSummary() const;

private:
    QStringList headers;
    QList<CheckResult> results;
    int checkCount = 0;
    int passCount = 0;
    int failCount = 0;
};
