// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientpane.h"

#include "host/window/ingredientdelegate.h"
#include "host/window/ingredientviewmodel.h"
#include "plugin/iingredientmanager.h"

#include <QHeaderView>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

IngredientPane::IngredientPane(QWidget *parent)
    : QWidget(parent)
    , model(new IngredientViewModel(this))
    , tree(new QTreeView(this))
{
    auto title = new QLabel(tr("&Ingredients"), this);
    title->setBuddy(tree);
    auto layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(tree);

    tree->setObjectName(QStringLiteral("ingredientTree"));
    tree->setAccessibleName(tr("Ingredients"));
    tree->setModel(model);
    tree->setItemDelegate(new IngredientDelegate(this));
    tree->setAlternatingRowColors(true);
    tree->setUniformRowHeights(true);
    tree->setAllColumnsShowFocus(true);
    tree->setTextElideMode(Qt::ElideMiddle);
    tree->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);

    connect(tree, &QTreeView::activated, this, &IngredientPane::editValue);
    connect(model, &QAbstractItemModel::dataChanged, this, &IngredientPane::hideRows);
    connect(model, &IngredientViewModel::editStarted, this, &IngredientPane::editStarted);
    connect(model, &IngredientViewModel::editFinished, this, &IngredientPane::editFinished);
}

void IngredientPane::setManager(IIngredientManager *manager)
{
    model->setSourceModel(manager ? manager->getIngredients() : nullptr);
    if (!manager) {
        return;
    }
    for (int column = 0; column < model->columnCount(); ++column) {
        tree->setColumnHidden(column, !manager->ingredientColumnIsVisible(column));
    }
    tree->expandAll();
    tree->resizeColumnToContents(0);
    hideRows();
}

void IngredientPane::setFailures(const QVector<CheckResult> &failures)
{
    model->setFailures(failures);
}

void IngredientPane::showIngredient(const QString &name)
{
    const QModelIndex index = model->indexOf(name);
    if (index.isValid()) {
        tree->setCurrentIndex(index.sibling(index.row(), 1));
        tree->scrollTo(index);
        tree->setFocus();
    }
}

void IngredientPane::hideRows()
{
    for (int groupRow = 0; groupRow < model->rowCount(); ++groupRow) {
        const QModelIndex group = model->index(groupRow, 0);
        const auto isHidden = [](const QModelIndex &index) {
            return index.data(Qt::UserRole).toString() == QLatin1String("hidden");
        };
        tree->setRowHidden(groupRow, {}, isHidden(group));
        for (int row = 0; row < model->rowCount(group); ++row) {
            tree->setRowHidden(row, group, isHidden(model->index(row, 0, group)));
        }
    }
}

/// Opens the editor of the row, wherever in the row the user has pointed.
void IngredientPane::editValue(const QModelIndex &index)
{
    for (int column = 0; column < model->columnCount(index.parent()); ++column) {
        const QModelIndex cell = index.sibling(index.row(), column);
        if (!tree->isColumnHidden(column) && (cell.flags() & Qt::ItemIsEditable)) {
            tree->setCurrentIndex(cell);
            tree->edit(cell);
            return;
        }
    }
}
