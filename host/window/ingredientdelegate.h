// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

/// Shows and edits the values of the ingredient tree in place. A path is shown as file name and
/// folder and edited with a browse button; a choice is edited with a drop-down list, and a text
/// with a line. If there are several candidates for a file, the cell shows how many, and the editor
/// offers them.
class IngredientDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit IngredientDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    /// Fills an editor only once, so that a change of the value does not replace what the user has
    /// typed.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    /// A path gets the rest of the row.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    /// Stores the value of an open editor and closes it.
    void commit();

signals:
    void editingChanged(bool isEditing);
    /// The user wants to edit @p cell.
    void editRequested(const QModelIndex &cell);

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

private:
    void finish(QWidget *editor);
    QWidget *makeEditor(QWidget *parent, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const;
    void paintPath(QPainter *painter, const QStyleOptionViewItem &cell,
                   const QModelIndex &index) const;

    mutable QPointer<QWidget> openEditor;
    mutable QPointer<QWidget> filledEditor;
};
