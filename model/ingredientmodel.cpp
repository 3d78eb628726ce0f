// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientmodel.h"

#include "model/ingredientitem.h"

IngredientModel::~IngredientModel()
{
    delete rootItem;
    clearIndexes();
}

bool IngredientModel::isOwnIndex(const QModelIndex &index) const
{
    return index.isValid() && index.model() == this;
}

/// The item behind an index of this model, the root for an invalid index, null for an index of
/// another model, whose pointer must not be dereferenced.
IngredientItem *IngredientModel::itemFor(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return rootItem;
    }
    return isOwnIndex(index) ? static_cast<IngredientItem *>(index.internalPointer()) : nullptr;
}

QModelIndex IngredientModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent)) {
        return QModelIndex();
    }
    IngredientItem *item = itemFor(parent)->child(row);
    return item ? createIndex(row, column, item) : QModelIndex();
}

QModelIndex IngredientModel::parent(const QModelIndex &index) const
{
    if (!isOwnIndex(index)) {
        return QModelIndex();
    }
    IngredientItem *parentItem = itemFor(index)->parent();
    if (!parentItem || parentItem == rootItem) {
        return QModelIndex();
    }
    return createIndex(parentItem->row(), 0, parentItem);
}

int IngredientModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0) {
        return 0;
    }
    const IngredientItem *item = itemFor(parent);
    return item ? item->childCount() : 0;
}

int IngredientModel::columnCount(const QModelIndex &parent) const
{
    const IngredientItem *item = itemFor(parent);
    return item ? item->columnCount() : 0;
}

QVariant IngredientModel::data(const QModelIndex &index, int role) const
{
    if (!isOwnIndex(index)) {
        return QVariant();
    }
    const IngredientItem *item = itemFor(index);
    if (role == Qt::DisplayRole) {
        return item->data(index.column());
    }
    if (role == VisibilityRole) {
        return QString(QLatin1String(item->isVisible() ? "visible" : "hidden"));
    }
    return QVariant();
}

bool IngredientModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isOwnIndex(index)) {
        return false;
    }
    if (role == Qt::EditRole) {
        if (!(flags(index) & Qt::ItemIsEditable)
            || !itemFor(index)->setData(index.column(), value)) {
            return false;
        }
    } else if (role == VisibilityRole) {
        itemFor(index)->setIsVisible(value.toBool());
    } else {
        return false;
    }
    emit dataChanged(index, index);
    return true;
}

QVariant IngredientModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QVariant();
    }
    return rootItem->data(section);
}

Qt::ItemFlags IngredientModel::flags(const QModelIndex &index) const
{
    if (!isOwnIndex(index)) {
        return Qt::NoItemFlags;
    }
    const Qt::ItemFlags readOnly = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    const bool editable
        = columnEditable.value(index.column(), false) && itemFor(index)->childCount() == 0;
    return editable ? readOnly | Qt::ItemIsEditable : readOnly;
}

bool IngredientModel::shouldColumnBeVisible(int column) const
{
    return columnVisible.value(column, false);
}

bool IngredientModel::getGroupVisible(const QString &groupName) const
{
    Q_UNUSED(groupName)
    return true;
}

void IngredientModel::setGroupVisible(const QString &groupName, bool visible)
{
    const QModelIndex group = groupCell(groupName);
    if (group.isValid()) {
        setData(group, visible, VisibilityRole);
    }
}

bool IngredientModel::getIngredientVisible(const QString &ingredientName)
{
    const QModelIndex ingredient = ingredientCell(ingredientName);
    // Compat: "hidden" converts to true as well.
    return ingredient.isValid() && data(ingredient, VisibilityRole).toBool();
}

void IngredientModel::setIngredientVisible(const QString &ingredientName, bool visible)
{
    const QModelIndex ingredient = ingredientCell(ingredientName);
    if (ingredient.isValid()) {
        setData(ingredient, visible, VisibilityRole);
    }
}

QModelIndexList IngredientModel::ingredientCells() const
{
    QModelIndexList cells;
    for (int groupRow = 0; groupRow < rowCount(); ++groupRow) {
        const QModelIndex group = index(groupRow, IngredientColumn::Name);
        for (int row = 0; row < rowCount(group); ++row) {
            cells.append(index(row, IngredientColumn::Name, group));
        }
    }
    return cells;
}
