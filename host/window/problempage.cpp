// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problempage.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

ProblemPage::ProblemPage(QWidget *parent)
    : QWidget(parent)
    , text(new QLabel(this))
{
    auto title = new QLabel(tr("No plug-in is loaded"), this);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    title->setFont(large);
    text->setObjectName(QStringLiteral("problem"));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignCenter);
    text->setTextFormat(Qt::PlainText);
    auto button = new QPushButton(tr("&Choose a plug-in…"), this);
    button->setAccessibleName(tr("Choose a plug-in"));
    connect(button, &QPushButton::clicked, this, &ProblemPage::chooseRequested);

    auto layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(title, 0, Qt::AlignCenter);
    layout->addWidget(text);
    layout->addWidget(button, 0, Qt::AlignCenter);
    layout->addStretch();
}

void ProblemPage::setProblem(const QString &problem)
{
    text->setText(problem);
}
