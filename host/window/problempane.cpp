// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problempane.h"

#include "host/window/problemmodel.h"

#include <QHeaderView>

namespace {

/// The width from which the file column is shown; below it, the problem needs the space.
const int minCharactersForFile = 200;

} // namespace

ProblemPane::ProblemPane(QWidget *parent)
    : QTreeView(parent)
    , model(new ProblemModel(this))
{
    setObjectName(QStringLiteral("problemList"));
    setAccessibleName(tr("Problems"));
    setModel(model);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    // The text and file columns share the remaining width.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(ProblemModel::TextColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(ProblemModel::FileColumn, QHeaderView::Stretch);
    // activated() covers the keyboard.
    connect(this, &QTreeView::clicked, this, &ProblemPane::choose);
    connect(this, &QTreeView::activated, this, &ProblemPane::choose);
}

void ProblemPane::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    // A click leads to the row, which shows the file.
    const int characters = width() / fontMetrics().averageCharWidth();
    setColumnHidden(ProblemModel::FileColumn, characters < minCharactersForFile);
}

void ProblemPane::choose(const QModelIndex &index)
{
    const Problem problem = model->problemAt(index);
    emit ingredientChosen(problem.ingredient, problem.key);
}

void ProblemPane::showNext()
{
    const int count = model->rowCount();
    if (count > 0) {
        const int next = (currentIndex().row() + 1) % count;
        setCurrentIndex(model->index(next, 0));
        choose(currentIndex());
    }
}

void ProblemPane::setProblems(QVector<Problem> problems)
{
    model->setProblems(std::move(problems));
}

/// A few lines, since the tree above it is more important.
QSize ProblemPane::sizeHint() const
{
    const int lineHeight = fontMetrics().height() * 3 / 2;
    return {QTreeView::sizeHint().width(), lineHeight * 6};
}
