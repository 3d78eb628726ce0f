// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QWidget>

class Session;
class IngredientDelegate;
class IngredientProxyModel;
class QAction;
class QTreeView;

/// The ingredient tree, edited in place.
class IngredientPane : public QWidget
{
    Q_OBJECT

public:
    /// A row whose value is a file.
    struct FileRow {
        IngredientId id;
        QRect area; ///< In the window.
    };

    /// Shows the values of @p imageSession, which must outlive this pane.
    explicit IngredientPane(Session *imageSession, QWidget *parent = nullptr);

    /// Selects an ingredient and sets the focus on it.
    void showIngredient(const IngredientId &id);
    /// The row at @p position in the window; none where there is none or its value is no file.
    std::optional<FileRow> fileRowAt(const QPoint &position) const;
    /// Stores what is being typed.
    void commitEditor();

    /// The actions for the current row, for a menu.
    QList<QAction *> rowActions() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void hideColumns();
    void attach();
    void detach();
    void update();
    void hideRows();
    void updateActions();
    void showMenu(const QPoint &position);
    void edit(const QModelIndex &index);
    void clearCurrent();
    void copyCurrent();

    Session *session;
    IngredientProxyModel *model;
    QTreeView *tree;
    IngredientDelegate *delegate;
    QAction *editAction;
    QAction *clearAction;
    QAction *copyAction;
    IngredientId current; ///< While the model is being replaced.
};
