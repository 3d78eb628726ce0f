// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

#include <QTreeWidget>

/// The list of problems of the image: as high as its rows, up to a limit, and hidden without rows.
class ProblemPane : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ProblemPane(QWidget *parent = nullptr);

    /// Shows @p problems and keeps the position for showNext().
    void setProblems(const Problems &problems);

    /// Selects the first problem or the one after the last selected one, wrapping around at the
    /// end, and emits ingredientChosen().
    void showNext();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user wants to see this ingredient.
    void ingredientChosen(const IngredientId &id);
    /// The user wants to change the settings.
    void settingsRequested();

private:
    void choose(const QTreeWidgetItem *item);
    void restorePosition(int row, const QStringList &selected);
    void addRow(const Problem &problem, const QStringList &row);
    int heightOfRows(int count) const;

    /// The texts of every row.
    QList<QStringList> rows;
};
