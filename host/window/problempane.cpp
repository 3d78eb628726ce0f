// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problempane.h"

#include "host/window/marks.h"
#include "host/window/problemtext.h"
#include "host/window/session.h"

#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QTextDocument>

namespace {

/// Each row also holds the ingredient's key, which is not shown.
enum Column { NameColumn, TextColumn, RequiredColumn, ActualColumn, FileColumn, KeyColumn };

/// The width from which the file column is shown; below it, the problem needs the space.
const int minCharactersForFile = 200;
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
    setHeaderLabels({tr("Ingredient"), tr("Problem"), tr("Required"), tr("Actual"), tr("File")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    // The text and file columns share the remaining width.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(TextColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(FileColumn, QHeaderView::Stretch);
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

void ProblemPane::resizeEvent(QResizeEvent *event)
{
    QTreeWidget::resizeEvent(event);
    // A click leads to the row, which shows the file.
    const int characters = width() / fontMetrics().averageCharWidth();
    setColumnHidden(FileColumn, characters < minCharactersForFile);
}

void ProblemPane::choose(const QTreeWidgetItem *item)
{
    emit ingredientChosen({item->text(NameColumn), item->text(KeyColumn)});
}

void ProblemPane::showNext()
{
    if (topLevelItemCount() > 0) {
        // The current row is the first one as soon as the list gets the focus.
        const int next = selectedItems().isEmpty() ? 0 : currentIndex().row() + 1;
        setCurrentItem(topLevelItem(next % topLevelItemCount()));
        choose(currentItem());
    }
}

void ProblemPane::setProblems(const Problems &problems)
{
    QList<QStringList> newRows;
    for (const Problem &problem : problems) {
        newRows << QStringList{problem.ingredient.name,
                               textOf(problem),
                               requiredText(problem),
                               actualText(problem),
                               QDir::toNativeSeparators(problem.files.join(tr(", "))),
                               problem.ingredient.key};
    }
    if (newRows == rows) {
        return;
    }
    rows = newRows;
    clear();
    for (int i = 0; i < rows.count(); ++i) {
        addRow(problems.at(i), rows.at(i));
    }
    for (const int column : {RequiredColumn, ActualColumn}) {
        setColumnHidden(column, isColumnEmpty(column));
    }
    setVisible(!rows.isEmpty());
    updateGeometry();
}

void ProblemPane::addRow(const Problem &problem, const QStringList &row)
{
    auto item = new QTreeWidgetItem(this, row);
    item->setIcon(NameColumn, markIcon(stateOf(problem)));
    for (int column = 0; column < columnCount(); ++column) {
        item->setToolTip(column, Qt::convertFromPlainText(row.at(column)));
    }
    if (problem.ingredient == Session::stitcherId()) {
        auto link = new QLabel(tr("<a href='settings'>Settings…</a>"), this);
        connect(link, &QLabel::linkActivated, this, &ProblemPane::settingsRequested);
        // It must be readable on a selected row.
        link->setAutoFillBackground(true);
        link->setBackgroundRole(QPalette::Base);
        setItemWidget(item, RequiredColumn, link);
    }
}

bool ProblemPane::isColumnEmpty(int column) const
{
    for (int i = 0; i < topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = topLevelItem(i);
        if (!item->text(column).isEmpty() || itemWidget(item, column)) {
            return false;
        }
    }
    return true;
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
