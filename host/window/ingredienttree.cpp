// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredienttree.h"

#include "host/core/ingredients.h"
#include "host/window/droppedfiles.h"
#include "host/window/inputkind.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QPainter>

namespace {

const int targetFrameWidth = 2;

/// Whether @p files may be dropped on a row; a project file is opened wherever it is dropped.
bool fitsRow(const QStringList &files)
{
    return files.count() == 1 && inputKindOf(files.first()) == InputKind::File;
}

} // namespace

IngredientTree::IngredientTree(QWidget *parent)
    : QTreeView(parent)
{
    setAcceptDrops(true);
}

void IngredientTree::dragEnterEvent(QDragEnterEvent *event)
{
    if (!droppedFiles(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
        showTarget(*event);
    }
}

void IngredientTree::dragMoveEvent(QDragMoveEvent *event)
{
    event->acceptProposedAction();
    showTarget(*event);
}

void IngredientTree::dragLeaveEvent(QDragLeaveEvent *event)
{
    Q_UNUSED(event)
    hideTarget();
}

void IngredientTree::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    showTarget(*event);
    const QModelIndex row = targetRow;
    hideTarget();
    const QStringList files = droppedFiles(event->mimeData());
    if (row.isValid()) {
        emit fileDropped(row, files.first());
    } else {
        emit filesDropped(files);
    }
}

void IngredientTree::showTarget(const QDropEvent &event)
{
    const QModelIndex pointed = indexAt(event.pos());
    const bool isFileRow = pointed.isValid()
        && kindOf(model()->buddy(pointed).data(Qt::EditRole)) == ValueKind::File;
    targetRow = isFileRow && fitsRow(droppedFiles(event.mimeData())) ? pointed : QModelIndex();
    isTarget = true;
    viewport()->update();
}

void IngredientTree::hideTarget()
{
    targetRow = QModelIndex();
    isTarget = false;
    viewport()->update();
}

void IngredientTree::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (!isTarget) {
        return;
    }
    QRect target = viewport()->rect();
    if (targetRow.isValid()) {
        const QRect row = visualRect(targetRow);
        target.setTop(row.top());
        target.setBottom(row.bottom());
    }
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), targetFrameWidth));
    painter.drawRect(target.adjusted(1, 1, -1, -1));
}
