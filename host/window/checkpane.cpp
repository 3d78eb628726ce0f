// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/checkpane.h"

#include "host/window/checkviewmodel.h"
#include "plugin/iexecutionmanager.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

CheckPane::CheckPane(QWidget *parent)
    : QWidget(parent)
    , model(new CheckViewModel(this))
    , table(new QTableView(this))
    , summary(new QLabel(tr("Nothing has been checked yet."), this))
{
    auto title = new QLabel(tr("Chec&ks"), this);
    title->setBuddy(table);
    auto failedFirst = new QPushButton(tr("Failed fi&rst"), this);
    failedFirst->setCheckable(true);
    failedFirst->setObjectName(QStringLiteral("failedFirst"));
    failedFirst->setAccessibleName(tr("Show failed checks first"));
    auto header = new QHBoxLayout;
    header->addWidget(title);
    header->addStretch();
    header->addWidget(failedFirst);
    auto layout = new QVBoxLayout(this);
    layout->addLayout(header);
    layout->addWidget(table);
    layout->addWidget(summary);

    summary->setObjectName(QStringLiteral("checkSummary"));
    summary->setAccessibleName(tr("Summary of the checks"));
    table->setObjectName(QStringLiteral("checkTable"));
    table->setAccessibleName(tr("Checks"));
    table->setModel(model);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setAlternatingRowColors(true);
    table->setShowGrid(false);
    table->setTabKeyNavigation(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    connect(failedFirst, &QPushButton::toggled, model, &CheckViewModel::setFailedFirst);
    // Double-click, or the key that stands for it.
    connect(table, &QTableView::activated, this, [this](const QModelIndex &index) {
        emit ingredientChosen(index.sibling(index.row(), 1).data().toString());
    });
}

void CheckPane::setManager(IExecutionManager *manager)
{
    execution = manager;
    model->setChecked(false);
    model->setSourceModel(manager ? manager->getIngredientChecks() : nullptr);
    summary->setText(tr("Nothing has been checked yet."));
}

bool CheckPane::check()
{
    if (!execution) {
        return false;
    }
    const bool isPassed = execution->verifyInputs();
    model->setChecked(true);
    table->resizeColumnsToContents();
    const CheckResultSummary counts = execution->getIngredientCheckSummary();
    summary->setText(
        isPassed ? tr("All %1 checks passed.").arg(counts.checkCount)
                 : tr("%1 of %2 checks failed.").arg(counts.failCount).arg(counts.checkCount));
    emit checked();
    return isPassed;
}

QVector<CheckResult> CheckPane::failures() const
{
    QVector<CheckResult> failed;
    if (const QAbstractItemModel *checks = model->sourceModel()) {
        for (int row = 0; row < checks->rowCount(); ++row) {
            CheckResult result;
            result.passed = checks->index(row, 0).data().toBool();
            result.ingredientName = checks->index(row, 1).data().toString();
            result.details = checks->index(row, 2).data().toString();
            if (!result.passed) {
                failed.append(result);
            }
        }
    }
    return failed;
}
