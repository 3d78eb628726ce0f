// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

#include <QTreeWidget>
#include <QVector>

/// The list of problems of the image.
class ProblemPane : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ProblemPane(QWidget *parent = nullptr);

    /// Shows @p problems; does nothing if they are unchanged, so that the selection stays.
    void setProblems(const Problems &problems);

    /// Selects the next problem, wrapping around at the end, and emits ingredientChosen().
    void showNext();

    QSize sizeHint() const override;

signals:
    /// The user wants to see this ingredient.
    void ingredientChosen(const IngredientId &id);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void choose(const QTreeWidgetItem *item);

    /// The text of every column of every row.
    QList<QStringList> rows;
};
