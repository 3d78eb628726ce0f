// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

#include <QTreeView>
#include <QVector>

class ProblemModel;

/// The list of problems of the image.
class ProblemPane : public QTreeView
{
    Q_OBJECT

public:
    explicit ProblemPane(QWidget *parent = nullptr);

    void setProblems(QVector<Problem> problems);

    /// Selects the next problem, wrapping around at the end, and emits ingredientChosen().
    void showNext();

    QSize sizeHint() const override;

signals:
    /// The user wants to see this ingredient.
    void ingredientChosen(const QString &name, const QString &key);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void choose(const QModelIndex &index);

    ProblemModel *model;
};
