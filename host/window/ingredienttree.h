// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPersistentModelIndex>
#include <QStringList>
#include <QTreeView>

/// A tree of ingredients that accepts dropped files: one file on its row, anything else on the tree
/// as a whole. The drop target is highlighted.
class IngredientTree : public QTreeView
{
    Q_OBJECT

public:
    explicit IngredientTree(QWidget *parent = nullptr);

signals:
    /// A file was dropped on @p row, a cell of an ingredient whose value is a file.
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
