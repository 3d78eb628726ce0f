// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

/// Paints check boxes with an outline in the colour of text: the styles' own one cannot be seen in
/// an empty box on a dark background.
class BitDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit BitDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
