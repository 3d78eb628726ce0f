// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

#include <QHash>
#include <QIdentityProxyModel>
#include <QStringList>
#include <QVector>

/// Shows the plug-in's ingredients to a view: values as text, demands as tooltips, a mark at the
/// ingredients whose last check failed. The edit role gives and takes the values themselves.
class IngredientViewModel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit IngredientViewModel(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    /// Marks the ingredients that @p failures name.
    void setFailures(const QVector<CheckResult> &failures);
    /// The name cell of an ingredient, by its display name; invalid when there is none.
    QModelIndex indexOf(const QString &ingredientName) const;

signals:
    /// A value is about to be edited, and has been: messages in between come from the edit.
    void editStarted();
    void editFinished();

private:
    QString toolTipOf(const QModelIndex &index) const;

    QHash<QString, QStringList> failuresByName;
};
