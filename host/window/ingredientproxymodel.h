// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"
#include "host/window/marks.h"

#include <QDateTime>
#include <QHash>
#include <QPair>
#include <QStringList>

#include <KExtraColumnsProxyModel>

class Session;

/// Presents the plug-in's ingredients to a view: values as text, requirements as tooltips, a mark
/// for the state of each row, and additional columns with the size, date and folder of the file.
/// The edit role returns the values themselves; edited values are passed to the session as text.
class IngredientProxyModel : public KExtraColumnsProxyModel
{
    Q_OBJECT

public:
    enum Role {
        StateRole = Qt::UserRole + 1, ///< The RowState, as a number.
        CandidatesRole,               ///< The paths to choose from; empty unless there are several.
        ChosenRole ///< Sets a path even if it is unchanged, which settles the choice.
    };

    /// The columns after those of the source.
    enum ExtraColumn { SizeColumn, ModifiedColumn, FolderColumn };

    explicit IngredientProxyModel(Session *imageSession, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant extraColumnData(const QModelIndex &parent, int row, int extraColumn,
                             int role) const override;
    /// The value cell of the row, so that editing works from every cell of it.
    QModelIndex buddy(const QModelIndex &index) const override;

    /// Updates the rows from the session's values, files and problems.
    void update();
    /// The value cell of an ingredient; invalid when there is none.
    QModelIndex valueCell(const IngredientId &id) const;
    /// The ingredient of a row; none for a group.
    std::optional<Ingredient> ingredientAt(const QModelIndex &index) const;

private:
    struct Row {
        Ingredient ingredient;
        RowState state = RowState::Plain;
        QStringList remarks; ///< Lines of the tooltip: problems and other remarks.
        QStringList candidates;
        qint64 size = -1;
        QDateTime modified;
    };
    using RowKey = QPair<int, int>;

    Row rowOf(const Ingredient &ingredient) const;
    RowKey rowKey(const QModelIndex &index) const;
    QVariant nameData(const QModelIndex &index, const Row &row, int role) const;
    QVariant valueData(const QModelIndex &index, const Row &row, int role) const;
    QString toolTipOf(const Row &row) const;

    Session *session;
    /// Indexed by the row of the group and the row within the group.
    QHash<RowKey, Row> rows;
};
