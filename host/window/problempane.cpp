// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problempane.h"

#include "host/window/marks.h"
#include "host/window/problemtext.h"
#include "host/window/session.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>

#include <algorithm>

namespace {

/// Each row also holds the ingredient's key and a tooltip, which have no column.
enum Column { NameColumn, TextColumn, KeyColumn, ToolTipColumn };

/// The tree above needs the height more.
const int maxRows = 6;
/// The list gets at most the window's height divided by this.
const int heightDivisor = 5;
const int minRows = 2;

} // namespace

ProblemPane::ProblemPane(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("problemList"));
    setAccessibleName(tr("Problems"));
    setHeaderLabels({tr("Ingredient"), tr("Problem")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(TextColumn, QHeaderView::Stretch);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    hide();
    // itemActivated() covers the keyboard.
    connect(this, &QTreeWidget::itemClicked, this, &ProblemPane::choose);
    connect(this, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem *item) {
        if (item->text(NameColumn) == Session::stitcherId().name) {
            emit settingsRequested();
        } else {
            choose(item);
        }
    });
}

void ProblemPane::choose(const QTreeWidgetItem *item)
{
    emit ingredientChosen({item->text(NameColumn), item->text(KeyColumn)});
}

void ProblemPane::showNext()
{
    if (topLevelItemCount() > 0) {
        // A current row that is not selected is the next one.
        const int next = currentIndex().row() + (selectedItems().isEmpty() ? 0 : 1);
        setCurrentItem(topLevelItem(next % topLevelItemCount()));
        choose(currentItem());
    }
}

void ProblemPane::setProblems(const Problems &problems)
{
    QList<QStringList> newRows;
    for (const Problem &problem : problems) {
        const QString text = problemLine(problem);
        const QStringList lines = QStringList(text) + problem.files;
        newRows << QStringList{problem.ingredient.name, text, problem.ingredient.key,
                               QDir::toNativeSeparators(lines.join(QLatin1Char('\n')))};
    }
    if (newRows == rows) {
        return;
    }
    const int position = qMax(0, currentIndex().row());
    const QStringList selected = selectedItems().isEmpty() ? QStringList() : rows.at(position);
    rows = newRows;
    clear();
    for (int i = 0; i < rows.count(); ++i) {
        addRow(problems.at(i), rows.at(i));
    }
    restorePosition(position, selected);
    setVisible(!rows.isEmpty());
    updateGeometry();
}

/// Selects the ingredient that was @p selected. If that has no problem any more, the one in its row
/// is the next one.
void ProblemPane::restorePosition(int row, const QStringList &selected)
{
    const auto isSelected = [&selected](const QStringList &each) {
        return each.value(NameColumn) == selected.value(NameColumn)
            && each.value(KeyColumn) == selected.value(KeyColumn);
    };
    const auto found = std::find_if(rows.begin(), rows.end(), isSelected);
    if (!selected.isEmpty() && found != rows.end()) {
        setCurrentItem(topLevelItem(int(found - rows.begin())));
    } else if (!rows.isEmpty()) {
        setCurrentItem(topLevelItem(row % rows.count()), NameColumn, QItemSelectionModel::NoUpdate);
    }
}

void ProblemPane::addRow(const Problem &problem, const QStringList &row)
{
    auto item = new QTreeWidgetItem(this, row);
    item->setIcon(NameColumn, markIcon(stateOf(problem)));
    for (const int column : {NameColumn, TextColumn}) {
        item->setToolTip(column, literalText(row.at(ToolTipColumn)));
    }
    if (problem.ingredient == Session::stitcherId()) {
        auto cell = new QWidget(this);
        auto layout = new QHBoxLayout(cell);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addStretch();
        auto link = new QLabel(tr("<a href='settings'>Settings…</a>"), cell);
        connect(link, &QLabel::linkActivated, this, &ProblemPane::settingsRequested);
        // It must be readable on a selected row.
        link->setAutoFillBackground(true);
        link->setBackgroundRole(QPalette::Base);
        layout->addWidget(link);
        setItemWidget(item, TextColumn, cell);
    }
}

int ProblemPane::heightOfRows(int count) const
{
    const int rowHeight = rows.isEmpty() ? fontMetrics().height() : sizeHintForRow(0);
    return header()->sizeHint().height() + rowHeight * count + 2 * frameWidth();
}

QSize ProblemPane::sizeHint() const
{
    int count = qMin(rows.count(), maxRows);
    while (count > minRows && heightOfRows(count) > window()->height() / heightDivisor) {
        --count;
    }
    return {QTreeWidget::sizeHint().width(), heightOfRows(count)};
}

QSize ProblemPane::minimumSizeHint() const
{
    return {QTreeWidget::minimumSizeHint().width(), heightOfRows(qMin(rows.count(), minRows))};
}
