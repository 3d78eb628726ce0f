// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

#include <QVector>
#include <QWidget>

class CheckViewModel;
class IExecutionManager;
class QLabel;
class QTableView;

/// The checks before a build: the table and its summary.
class CheckPane : public QWidget
{
    Q_OBJECT

public:
    explicit CheckPane(QWidget *parent = nullptr);

    /// Shows the checks of @p manager, which must outlive this pane or be replaced by null.
    void setManager(IExecutionManager *manager);
    /// Checks all files; true when every check passed.
    bool check();
    /// What failed in the last check, in the table's order.
    QVector<CheckResult> failures() const;

signals:
    /// A check has been made.
    void checked();
    /// The user wants to see this ingredient.
    void ingredientChosen(const QString &name);

private:
    IExecutionManager *execution = nullptr;
    CheckViewModel *model;
    QTableView *table;
    QLabel *summary;
};
