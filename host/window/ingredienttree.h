// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPersistentModelIndex>
#include <QStringList>
#include <QTreeView>

/// A tree of ingredients on which files are dropped: one file on the row that it is for, anything
/// else on the tree as a whole. What would take the files is highlighted.
class IngredientTree : public QTreeView
{
    Q_OBJECT

public:
    explicit IngredientTree(QWidget *parent = nullptr);

signals:
    /// @p row is a cell of the row; its ingredient has a file as its value.
    void fileDropped(const QModelIndex &row, const QString &file);
    void filesDropped(const QStringList &files);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showTarget(const QDropEvent &event);
    void hideTarget();

    QPersistentModelIndex targetRow;
    bool isTarget = false;
};
