// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientproxymodel.h"

#include "host/core/filestate.h"
#include "host/window/problemtext.h"
#include "host/window/session.h"
#include "model/filepath.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPalette>

namespace {

bool isMissing(const Ingredient &ingredient)
{
    return kindOf(ingredient.value) == ValueKind::File
        && ingredient.value.value<FilePath>().isRequired && textOf(ingredient.value).isEmpty();
}

QString stateText(RowState state)
{
    switch (state) {
    case RowState::Plain:
        return {};
    case RowState::Good:
        return IngredientProxyModel::tr("no problems");
    case RowState::Newer:
        return IngredientProxyModel::tr("newer than the image");
    case RowState::Missing:
        return IngredientProxyModel::tr("no file chosen");
    case RowState::Warning:
        return IngredientProxyModel::tr("has a warning");
    case RowState::Problem:
        break;
    }
    return IngredientProxyModel::tr("has problems");
}

/// The name of @p file, with the number of files to choose from.
QString fileText(const QString &file, int candidateCount)
{
    const QString name
        = file.isEmpty() ? IngredientProxyModel::tr("no file chosen") : QFileInfo(file).fileName();
    return candidateCount == 0 ? name
                               : IngredientProxyModel::tr("%1 (%2 candidates ▾)")
                                     .arg(name, QLocale().toString(candidateCount));
}

} // namespace

IngredientProxyModel::IngredientProxyModel(Session *imageSession, QObject *parent)
    : KExtraColumnsProxyModel(parent)
    , session(imageSession)
{
    appendColumn(tr("Size"));
    appendColumn(tr("Modified"));
    appendColumn(tr("Folder"));
}

QModelIndex IngredientProxyModel::buddy(const QModelIndex &index) const
{
    const auto ingredient = ingredientAt(index);
    return ingredient ? sibling(index.row(), ingredient->index.column(), index) : index;
}

IngredientProxyModel::RowKey IngredientProxyModel::rowKey(const QModelIndex &index) const
{
    const QModelIndex group = parent(index);
    return group.isValid() ? RowKey(group.row(), index.row()) : RowKey(-1, -1);
}

QVariant IngredientProxyModel::data(const QModelIndex &index, int role) const
{
    const Row row = rows.value(rowKey(index));
    switch (role) {
    case Qt::ToolTipRole:
        return toolTipOf(row);
    case StateRole:
        return int(row.state);
    case CandidatesRole:
        return row.candidates;
    default:
        break;
    }
    if (extraColumnForProxyColumn(index.column()) >= 0) {
        return KExtraColumnsProxyModel::data(index, role);
    }
    if (index.column() == 0 && row.ingredient.index.isValid()) {
        return nameData(index, row, role);
    }
    return valueData(index, row, role);
}

QVariant IngredientProxyModel::nameData(const QModelIndex &index, const Row &row, int role) const
{
    if (role == Qt::DecorationRole) {
        return markIcon(row.state);
    }
    if (role == Qt::AccessibleTextRole && row.state != RowState::Plain) {
        return QStringLiteral("%1, %2").arg(row.ingredient.id.name, stateText(row.state));
    }
    return KExtraColumnsProxyModel::data(index, role);
}

/// The data of a value or of another text of the plug-in.
QVariant IngredientProxyModel::valueData(const QModelIndex &index, const Row &row, int role) const
{
    QVariant value = KExtraColumnsProxyModel::data(index, Qt::DisplayRole);
    const bool isFile = kindOf(value) == ValueKind::File;
    const QString file = isFile ? textOf(value) : QString();
    switch (role) {
    case Qt::EditRole:
        return value;
    case Qt::DisplayRole:
        return isFile                           ? fileText(file, row.candidates.count())
            : kindOf(value) == ValueKind::Other ? value
                                                : textOf(value);
    case Qt::ForegroundRole:
        if (isFile && !row.candidates.isEmpty()) {
            return QApplication::palette().brush(QPalette::Link);
        }
        if (isFile && file.isEmpty()) {
            return QApplication::palette().brush(QPalette::PlaceholderText);
        }
        break;
    default:
        break;
    }
    return KExtraColumnsProxyModel::data(index, role);
}

QVariant IngredientProxyModel::extraColumnData(const QModelIndex &parent, int row, int extraColumn,
                                               int role) const
{
    const Row shown = rows.value({parent.row(), row});
    if (extraColumn == FolderColumn && role == Qt::ForegroundRole) {
        return QApplication::palette().brush(QPalette::PlaceholderText);
    }
    if (role != Qt::DisplayRole || kindOf(shown.ingredient.value) != ValueKind::File) {
        return {};
    }
    const QString file = shown.ingredient.text();
    if (extraColumn == FolderColumn) {
        return file.isEmpty() ? QString() : QDir::toNativeSeparators(QFileInfo(file).path());
    }
    if (shown.size < 0) {
        return {};
    }
    return extraColumn == SizeColumn ? bytesText(shown.size)
                                     : QLocale().toString(shown.modified, QLocale::ShortFormat);
}

/// Passes the value to the session, which also replaces the model if the value is a data file. The
/// plug-in acts on every write as a change, so an unchanged value is written only if the user has
/// chosen it.
bool IngredientProxyModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const auto ingredient = ingredientAt(index);
    const bool isChosen = role == ChosenRole;
    if ((role != Qt::EditRole && !isChosen) || !ingredient
        || ingredient->index.column() != index.column()
        || (!isChosen && textOf(value) == textOf(data(index, Qt::EditRole)))) {
        return false;
    }
    session->setValue(ingredient->id, textOf(value));
    return true;
}

QString IngredientProxyModel::toolTipOf(const Row &row) const
{
    QStringList lines{QDir::toNativeSeparators(textOf(row.ingredient.value)),
                      demandOf(row.ingredient.value)};
    if (row.size >= 0) {
        lines << tr("%1, modified %2")
                     .arg(bytesText(row.size),
                          QLocale().toString(row.modified, QLocale::ShortFormat));
    }
    lines += row.remarks;
    lines.removeAll(QString());
    return literalText(lines.join(QLatin1Char('\n')));
}

IngredientProxyModel::Row IngredientProxyModel::rowOf(const Ingredient &ingredient) const
{
    Row row;
    row.ingredient = ingredient;
    row.candidates = session->candidates(ingredient.id);
    if (kindOf(ingredient.value) == ValueKind::File) {
        const QString file = textOf(ingredient.value);
        const FileState state = FileState::of(file);
        if (state.isRegular()) {
            row.size = state.size;
            row.modified = QFileInfo(file).lastModified();
        }
        row.state = file.isEmpty() ? RowState::Plain : RowState::Good;
    }
    if (session->isNewerThanImage(ingredient)) {
        row.state = RowState::Newer;
        row.remarks << tr("The file is newer than the image.");
    }
    for (const Problem &problem : session->problems()) {
        if (problem.ingredient == ingredient.id) {
            const RowState state = isMissing(ingredient) ? RowState::Missing : stateOf(problem);
            row.state = std::max(row.state, state);
            row.remarks << problemLine(problem);
        }
    }
    return row;
}

void IngredientProxyModel::update()
{
    rows.clear();
    for (const Ingredient &ingredient : session->ingredients()) {
        const RowKey key(ingredient.index.parent().row(), ingredient.index.row());
        rows.insert(key, rowOf(ingredient));
    }
    for (int groupRow = 0; groupRow < rowCount(); ++groupRow) {
        const QModelIndex group = index(groupRow, 0);
        const int last = rowCount(group) - 1;
        if (last >= 0) {
            emit dataChanged(index(0, 0, group), index(last, columnCount(group) - 1, group));
        }
    }
}

QModelIndex IngredientProxyModel::valueCell(const IngredientId &id) const
{
    const auto ingredient = findIngredient(session->ingredients(), id);
    return ingredient && ingredient->index.model() == sourceModel()
        ? mapFromSource(ingredient->index)
        : QModelIndex();
}

std::optional<Ingredient> IngredientProxyModel::ingredientAt(const QModelIndex &index) const
{
    const auto row = rows.constFind(rowKey(index));
    return row == rows.constEnd() ? std::nullopt : std::make_optional(row->ingredient);
}
