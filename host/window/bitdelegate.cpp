// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/bitdelegate.h"

#include <QApplication>
#include <QPainter>

BitDelegate::BitDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

void BitDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    if (!(cell.features & QStyleOptionViewItem::HasCheckIndicator)) {
        return;
    }
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    const QRect box
        = style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &cell, cell.widget);
    const bool isSelected = cell.state & QStyle::State_Selected;
    painter->setPen(
        cell.palette.color(isSelected ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->drawRect(box.adjusted(0, 0, -1, -1));
}
