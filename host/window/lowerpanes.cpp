// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/lowerpanes.h"

#include "host/window/dataviewpane.h"
#include "host/window/logpane.h"
#include "host/window/targetdetailspane.h"

#include <QAction>
#include <QSettings>
#include <QTabBar>

#include <algorithm>

namespace {

const QLatin1String shownKey("layout/shown");

} // namespace

LowerPanes::LowerPanes(QWidget *parent)
    : QTabWidget(parent)
    , logPane(new LogPane(this))
    , dataViewPane(new DataViewPane(this))
    , targetDetailsPane(new TargetDetailsPane(this))
{
    setDocumentMode(true);
    // The Tab key would get stuck here while the tab bar is hidden.
    setFocusProxy(nullptr);
    setFocusPolicy(Qt::NoFocus);
    addPane(logPane, tr("Log"));
    addPane(dataViewPane, tr("Data views"));
    addPane(targetDetailsPane, tr("Target details"));
    hide();
}

void LowerPanes::addPane(QWidget *pane, const QString &title)
{
    const int index = addTab(pane, title);
    setTabVisible(index, false);
    auto action = new QAction(title, this);
    action->setCheckable(true);
    actions << action;
    connect(action, &QAction::triggered, this, [this, index](bool isShown) {
        // A pane behind another one comes to the front instead.
        setShown(index, isShown || index != currentIndex());
    });
}

void LowerPanes::setShown(int index, bool isShown)
{
    actions.at(index)->setChecked(isShown);
    setTabVisible(index, isShown);
    if (isShown) {
        setCurrentIndex(index);
    }
    const auto count = std::count_if(actions.begin(), actions.end(),
                                     [](const QAction *each) { return each->isChecked(); });
    tabBar()->setVisible(count > 1);
    setVisible(count > 0);
}

QList<QAction *> LowerPanes::viewActions() const
{
    return actions;
}

void LowerPanes::setPlugin(ILoomwrightPlugin *plugin)
{
    dataViewPane->setPlugin(plugin);
    targetDetailsPane->setPlugin(plugin);
}

void LowerPanes::offerDataViews()
{
    const bool found = dataViewPane->count() > 0;
    const int index = indexOf(dataViewPane);
    actions.at(index)->setEnabled(found);
    if (!found) {
        setShown(index, false);
    }
}

void LowerPanes::showLog()
{
    setShown(indexOf(logPane), true);
}

void LowerPanes::searchLog()
{
    showLog();
    logPane->focusSearch();
}

void LowerPanes::showNextBuildError()
{
    showLog();
    logPane->showNextBuildError();
}

void LowerPanes::restoreLayout(const QSettings &settings)
{
    const QStringList shown = settings.value(shownKey).toStringList();
    for (int i = 0; i < count(); ++i) {
        setShown(i, shown.contains(widget(i)->objectName()));
    }
    offerDataViews();
}

void LowerPanes::saveLayout(QSettings *settings) const
{
    QStringList shown;
    for (int i = 0; i < count(); ++i) {
        if (actions.at(i)->isChecked()) {
            shown << widget(i)->objectName();
        }
    }
    settings->setValue(shownKey, shown);
}
