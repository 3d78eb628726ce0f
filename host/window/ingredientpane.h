// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QStringList>
#include <QWidget>

class Session;
class IngredientDelegate;
class IngredientProxyModel;
class IngredientTree;
class QAction;

/// The ingredient tree, edited in place.
class IngredientPane : public QWidget
{
    Q_OBJECT

public:
    /// Shows the values of @p imageSession, which must outlive this pane.
    explicit IngredientPane(Session *imageSession, QWidget *parent = nullptr);

    /// Selects an ingredient and sets the focus on it.
    void showIngredient(const IngredientId &id);
    /// Stores what is being typed.
    void commitEditor();
    /// Sets whether values may be changed.
    void setEditable(bool isEditable);

    /// The actions for the current row, for a menu.
    QList<QAction *> rowActions() const;

signals:
    /// Files and folders were dropped outside of any row.
    void filesDropped(const QStringList &files);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void hideColumns();
    void attach();
    void detach();
    void update();
    void hideRows();
    void showMenu(const QPoint &position);
    void edit(const QModelIndex &index);
    void clearCurrent();
    void copyCurrent();

    Session *session;
    IngredientProxyModel *model;
    IngredientTree *tree;
    IngredientDelegate *delegate;
    QAction *editAction;
    QAction *clearAction;
    QAction *copyAction;
    IngredientId current; ///< While the model is being replaced.
};
