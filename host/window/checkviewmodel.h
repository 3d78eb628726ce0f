// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QSortFilterProxyModel>

/// Shows the plug-in's check table to a view: pass or fail in words with a mark and a colour, and
/// failed checks first where that is wanted.
class CheckViewModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit CheckViewModel(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    void setFailedFirst(bool isFailedFirst);
    /// Before the first check the plug-in's table holds a placeholder row, which is not shown.
    void setChecked(bool isChecked);

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    bool hasBeenChecked = false;
};
