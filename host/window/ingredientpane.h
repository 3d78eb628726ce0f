// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

#include <QVector>
#include <QWidget>

class IIngredientManager;
class IngredientViewModel;
class QTreeView;

/// The ingredient tree, edited in place.
class IngredientPane : public QWidget
{
    Q_OBJECT

public:
    explicit IngredientPane(QWidget *parent = nullptr);

    /// Shows the ingredients of @p manager, which must outlive this pane or be replaced by null.
    void setManager(IIngredientManager *manager);
    /// Marks the ingredients that @p failures name.
    void setFailures(const QVector<CheckResult> &failures);
    /// Selects an ingredient and gives it the focus.
    void showIngredient(const QString &name);

signals:
    /// A value is about to be edited, and has been.
    void editStarted();
    void editFinished();

private:
    void hideRows();
    void editValue(const QModelIndex &index);

    IngredientViewModel *model;
    QTreeView *tree;
};
