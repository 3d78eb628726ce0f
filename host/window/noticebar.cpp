// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/noticebar.h"

#include "host/window/wrappinglabel.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QToolButton>

namespace {

const int maxLines = 4;

} // namespace

NoticeBar::NoticeBar(QWidget *parent)
    : QFrame(parent)
    , label(new WrappingLabel(this))
{
    auto closeButton = new QToolButton(this);
    closeButton->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    closeButton->setAutoRaise(true);
    closeButton->setFocusPolicy(Qt::StrongFocus);
    closeButton->setAccessibleName(tr("Close the notice"));
    closeButton->setToolTip(closeButton->accessibleName());
    auto layout = new QHBoxLayout(this);
    layout->addWidget(label, 1);
    layout->addWidget(closeButton, 0, Qt::AlignTop);

    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    label->setObjectName(QStringLiteral("notice"));
    label->setForegroundRole(QPalette::ToolTipText);
    connect(closeButton, &QToolButton::clicked, this, &QWidget::hide);
    hide();
}

void NoticeBar::showText(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    if (lines.count() > maxLines) {
        lines = lines.mid(0, maxLines) << tr("… the log has more.");
    }
    label->setText(lines.join(QLatin1Char('\n')));
    show();
}
