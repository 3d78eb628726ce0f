// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/targetdetailspane.h"

#include "plugin/iloomwrightplugin.h"

TargetDetailsPane::TargetDetailsPane(QWidget *parent)
    : QScrollArea(parent)
{
    setObjectName(QStringLiteral("targetDetails"));
    setAccessibleName(tr("Target details"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
}

void TargetDetailsPane::setPlugin(ILoomwrightPlugin *plugin)
{
    takeWidget();
    QWidget *page = plugin ? plugin->getTargetDetailsWidget() : nullptr;
    if (page) {
        setWidget(page);
        page->show();
    }
}
