// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QVariant>
#include <QVector>

/// One node of the ingredient tree: the root, a group or an ingredient.
class IngredientItem
{
public:
    /// Creates a visible node with @p data, one value per column. The parent does not own it until
    /// appendChild() is called.
    explicit IngredientItem(const QVector<QVariant> &data, IngredientItem *parent = nullptr);
    /// Deletes all children.
    ~IngredientItem();

    /// Appends @p item as the last child and takes ownership of it.
    void appendChild(IngredientItem *item);
    /// The child at @p row, or null when there is none.
    IngredientItem *child(int row) const;
    /// Number of children.
    int childCount() const;
    /// Number of cells.
    int columnCount() const;
    /// The cell at @p column, or an invalid value when there is none.
    QVariant data(int column) const;
    /// Replaces the cell at @p column; false, with no change, when there is none.
    bool setData(int column, const QVariant &value);
    /// The parent, null for the root.
    IngredientItem *parent() const;
    /// Position among the parent's children; 0 for the root.
    int row() const;
    /// The visibility flag; hidden nodes stay in the tree.
    bool isVisible() const;
    /// Sets the visibility flag.
    void setIsVisible(bool isVisible);

private:
    Q_DISABLE_COPY(IngredientItem)

    QList<IngredientItem *> childItems;
    QVector<QVariant> itemData;
    IngredientItem *parentItem;
    bool visible = true;
    /// Set by the parent's appendChild(); rows never move afterwards. Searching the parent's
    /// children instead made traversing a wide tree take quadratic time.
    int rowInParent = 0;
};
