// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

/// Edits the values of the ingredient tree in place: paths with a browse button, choices with a
/// drop-down list, texts in a line.
class IngredientDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit IngredientDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void finish(QWidget *editor);
};
