// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/targetdetailspane.h"

#include "plugin/iloomwrightplugin.h"

#include <QLabel>

#include <algorithm>

namespace {

bool isInput(const QWidget &widget)
{
    // Labels with selectable text accept the focus, and scroll areas always do.
    const bool informs = qobject_cast<const QLabel *>(&widget) != nullptr
        || qobject_cast<const QScrollArea *>(&widget) != nullptr;
    return !informs && widget.focusPolicy() != Qt::NoFocus;
}

} // namespace

bool hasInputs(const QWidget &page)
{
    if (isInput(page)) {
        return true;
    }
    const QList<QWidget *> children = page.findChildren<QWidget *>();
    return std::any_of(children.begin(), children.end(),
                       [](const QWidget *child) { return isInput(*child); });
}

TargetDetailsPane::TargetDetailsPane(QWidget *parent)
    : QScrollArea(parent)
{
    setObjectName(QStringLiteral("targetDetails"));
    setAccessibleName(tr("Target details"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
}

TargetDetailsPane::~TargetDetailsPane()
{
    setPlugin(nullptr);
}

void TargetDetailsPane::setPlugin(ILoomwrightPlugin *plugin)
{
    if (page) {
        takeWidget();
        page->hide();
        page->setParent(nullptr);
    }
    page = plugin ? plugin->getTargetDetailsWidget() : nullptr;
    if (page) {
        setWidget(page);
        page->show();
    }
}

bool TargetDetailsPane::isPageNeeded() const
{
    return page && hasInputs(*page);
}
