// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

/// Paints check boxes with an outline in the text colour: the outline that styles draw for an empty
/// box is invisible on a dark background.
class BitDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit BitDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
