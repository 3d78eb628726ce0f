// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

#include <QAbstractTableModel>
#include <QVector>

/// The list of problems as a table.
class ProblemModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { IngredientColumn, TextColumn, RequiredColumn, ActualColumn, FileColumn, Count };

    explicit ProblemModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Shows @p newProblems; does nothing if they are unchanged, so that the selection stays.
    void setProblems(QVector<Problem> newProblems);
    Problem problemAt(const QModelIndex &index) const;

private:
    QVector<Problem> problems;
};

/// A size in the user's locale, with the unit.
QString bytesText(qint64 size);
/// @p problem in one line, without the ingredient and the file.
QString problemLine(const Problem &problem);
