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
    /// Creates a visible node that holds @p data, one value per column. It does not become a child of
    /// @p parent by itself: see appendChild().
    explicit IngredientItem(const QVector<QVariant> &data, IngredientItem *parent = nullptr);
    /// Deletes all children.
    ~IngredientItem();

    /// Appends @p item as the last child and takes it over.
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
    /// Set when the parent takes this item over; rows never move afterwards. Looking it up among
    /// the parent's children made a walk over a wide tree cost the square of its width.
    int rowInParent = 0;
};
