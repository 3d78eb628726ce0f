// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientitem.h"

IngredientItem::IngredientItem(const QVector<QVariant> &data, IngredientItem *parent)
    : itemData(data)
    , parentItem(parent)
{
}

IngredientItem::~IngredientItem()
{
    qDeleteAll(childItems);
}

void IngredientItem::appendChild(IngredientItem *item)
{
    item->rowInParent = childItems.count();
    childItems.append(item);
}

IngredientItem *IngredientItem::child(int row) const
{
    return childItems.value(row);
}

int IngredientItem::childCount() const
{
    return childItems.count();
}

int IngredientItem::columnCount() const
{
    return itemData.count();
}

QVariant IngredientItem::data(int column) const
{
    return itemData.value(column);
}

bool IngredientItem::setData(int column, const QVariant &value)
{
    if (column < 0 || column >= itemData.count()) {
        return false;
    }
    itemData.replace(column, value);
    return true;
}

IngredientItem *IngredientItem::parent() const
{
    return parentItem;
}

int IngredientItem::row() const
{
    return rowInParent;
}

bool IngredientItem::isVisible() const
{
    return visible;
}

void IngredientItem::setIsVisible(bool isVisible)
{
    visible = isVisible;
}
