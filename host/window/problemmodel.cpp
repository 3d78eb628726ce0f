// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problemmodel.h"

#include "host/window/ingredientproxymodel.h"
#include "host/window/marks.h"

#include <QDir>
#include <QLocale>
#include <QTextDocument>

#include <algorithm>

namespace {

bool isSame(const Problem &left, const Problem &right)
{
    return left.text == right.text && left.ingredient == right.ingredient && left.key == right.key
        && left.file == right.file && left.required == right.required
        && left.actual == right.actual;
}

QString requiredText(const Problem &problem)
{
    return problem.requiredSize >= 0 ? bytesText(problem.requiredSize) : problem.required;
}

QString actualText(const Problem &problem)
{
    return problem.actualSize >= 0 ? bytesText(problem.actualSize) : problem.actual;
}

} // namespace

QString bytesText(qint64 size)
{
    return size == 1 ? ProblemModel::tr("1 byte")
                     : ProblemModel::tr("%1 bytes").arg(QLocale().toString(size));
}

QString problemLine(const Problem &problem)
{
    const QString required = requiredText(problem);
    const QString actual = actualText(problem);
    if (required.isEmpty() || actual.isEmpty()) {
        return problem.text;
    }
    return ProblemModel::tr("%1: %2 required, found %3").arg(problem.text, required, actual);
}

ProblemModel::ProblemModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

int ProblemModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : problems.count();
}

int ProblemModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(Count);
}

QVariant ProblemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case IngredientColumn:
        return tr("Ingredient");
    case TextColumn:
        return tr("Problem");
    case RequiredColumn:
        return tr("Required");
    case ActualColumn:
        return tr("Found");
    case FileColumn:
        return tr("File");
    default:
        return {};
    }
}

QVariant ProblemModel::data(const QModelIndex &index, int role) const
{
    const Problem problem = problemAt(index);
    if (role == Qt::DecorationRole && index.column() == IngredientColumn) {
        return markIcon(RowState::Problem);
    }
    if (role == Qt::ToolTipRole) {
        return Qt::convertFromPlainText(data(index, Qt::DisplayRole).toString());
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
    case IngredientColumn:
        return problem.ingredient;
    case TextColumn:
        return problem.text;
    case RequiredColumn:
        return requiredText(problem);
    case ActualColumn:
        return actualText(problem);
    case FileColumn:
        return QDir::toNativeSeparators(problem.file);
    default:
        return {};
    }
}

void ProblemModel::setProblems(QVector<Problem> newProblems)
{
    if (std::equal(problems.begin(), problems.end(), newProblems.begin(), newProblems.end(),
                   isSame)) {
        return;
    }
    beginResetModel();
    problems = std::move(newProblems);
    endResetModel();
}

Problem ProblemModel::problemAt(const QModelIndex &index) const
{
    return problems.value(index.row());
}
