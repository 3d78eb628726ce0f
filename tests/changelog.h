// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractItemModel>

/// Records the cells that a model reports as changed.
class ChangeLog : public QObject
{
    Q_OBJECT

public:
    explicit ChangeLog(QAbstractItemModel *model)
    {
        connect(model, SIGNAL(dataChanged(QModelIndex, QModelIndex)),
                SLOT(add(QModelIndex, QModelIndex)));
    }

    /// The cells since the last call; an invalid index for a change of more than one cell.
    QModelIndexList take()
    {
        const QModelIndexList taken = cells;
        cells.clear();
        return taken;
    }

public slots:
    void add(const QModelIndex &topLeft, const QModelIndex &bottomRight)
    {
        cells << (topLeft == bottomRight ? topLeft : QModelIndex());
    }

private:
    QModelIndexList cells;
};
