// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/hintpage.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

HintPage::HintPage(const QString &title, const QString &buttonText, QWidget *parent)
    : QFrame(parent)
    , text(new QLabel(this))
{
    auto titleLabel = new QLabel(title, this);
    QFont large = titleLabel->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    titleLabel->setFont(large);
    text->setObjectName(QStringLiteral("hint"));
    auto button = new QPushButton(buttonText, this);
    connect(button, &QPushButton::clicked, this, &HintPage::requested);

    auto layout = new QVBoxLayout(this);
    layout->addStretch();
    for (QLabel *label : {titleLabel, text}) {
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
        layout->addWidget(label);
    }
    layout->addWidget(button, 0, Qt::AlignCenter);
    layout->addStretch();
}

void HintPage::setText(const QString &newText)
{
    text->setText(newText);
}

void HintPage::setTextVisible(bool isVisible)
{
    text->setVisible(isVisible);
}
