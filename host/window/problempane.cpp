// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problempane.h"

#include "host/window/ingredientproxymodel.h"
#include "host/window/marks.h"
#include "host/window/problemtext.h"

#include <QDir>
#include <QHeaderView>
#include <QTextDocument>

namespace {

/// Each row also holds the ingredient's key, which is not shown.
enum Column { NameColumn, TextColumn, RequiredColumn, ActualColumn, FileColumn, KeyColumn };

/// The width from which the file column is shown; below it, the problem needs the space.
const int minCharactersForFile = 200;

} // namespace

ProblemPane::ProblemPane(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("problemList"));
    setAccessibleName(tr("Problems"));
    setHeaderLabels({tr("Ingredient"), tr("Problem"), tr("Required"), tr("Found"), tr("File")});
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
    // itemActivated() covers the keyboard.
    connect(this, &QTreeWidget::itemClicked, this, &ProblemPane::choose);
    connect(this, &QTreeWidget::itemActivated, this, &ProblemPane::choose);
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
        const int next = currentIndex().row() + 1;
        setCurrentItem(topLevelItem(next % topLevelItemCount()));
        choose(currentItem());
    }
}

void ProblemPane::setProblems(const Problems &problems)
{
    QList<QStringList> newRows;
    for (const Problem &problem : problems) {
        newRows << QStringList{problem.ingredient.name,
                               problem.text,
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
    for (const QStringList &row : qAsConst(rows)) {
        auto item = new QTreeWidgetItem(this, row);
        item->setIcon(NameColumn, markIcon(RowState::Problem));
        for (int column = 0; column < columnCount(); ++column) {
            item->setToolTip(column, Qt::convertFromPlainText(row.at(column)));
        }
    }
}

/// A few lines, since the tree above it is more important.
QSize ProblemPane::sizeHint() const
{
    const int lineHeight = fontMetrics().height() * 3 / 2;
    return {QTreeWidget::sizeHint().width(), lineHeight * 6};
}
