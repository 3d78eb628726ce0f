// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

/// Edits the values of the ingredient tree in place: a path with a line, a browse button and the
/// candidates, a choice with a drop-down list, and a text with a line. The values come back as
/// text.
class IngredientDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit IngredientDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    /// Does nothing: an editor is filled when it is created, so that a change of the value does not
    /// replace what the user has typed.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    /// An editor gets the rest of the row.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// Stores the value of an open editor and closes it.
    void commit();

signals:
    void editingChanged(bool isEditing);

private:
    QWidget *makeEditor(QWidget *parent, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const;

    mutable QPointer<QWidget> openEditor;
};
