// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/lowerpanes.h"

#include "host/window/dataviewpane.h"
#include "host/window/logpane.h"
#include "host/window/targetdetailspane.h"

#include <QAction>
#include <QSettings>
#include <QTabBar>

namespace {

const QLatin1String shownKey("layout/shown");
const QLatin1String frontKey("layout/front");

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
    connect(this, &QTabWidget::currentChanged, this, [this](int index) { front = index; });
    showPanes();
}

void LowerPanes::addPane(QWidget *pane, const QString &title)
{
    const int index = addTab(pane, title);
    auto action = new QAction(title, this);
    action->setCheckable(true);
    actions << action;
    connect(action, &QAction::triggered, this, [this, index](bool isShown) {
        // A pane behind another one comes to the front instead.
        if (isShown || index != currentIndex()) {
            bringToFront(index);
        } else {
            showPanes();
        }
    });
}

void LowerPanes::bringToFront(int index)
{
    actions.at(index)->setChecked(true);
    front = index;
    showPanes();
}

/// Shows the panes that the user wants and in which there is something.
void LowerPanes::showPanes()
{
    // That another pane takes the place of one that is hidden is no wish of the user.
    const QSignalBlocker blocker(this);
    int current = -1;
    int shownCount = 0;
    for (int i = 0; i < count(); ++i) {
        const bool isShown = actions.at(i)->isChecked() && actions.at(i)->isEnabled();
        setTabVisible(i, isShown);
        shownCount += isShown ? 1 : 0;
        if (isShown && (current < 0 || i == front)) {
            current = i;
        }
    }
    setCurrentIndex(current);
    tabBar()->setVisible(shownCount > 1);
    setVisible(shownCount > 0);
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
    actions.at(indexOf(dataViewPane))->setEnabled(dataViewPane->count() > 0);
    showPanes();
}

void LowerPanes::showLog()
{
    bringToFront(indexOf(logPane));
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
        actions.at(i)->setChecked(shown.contains(widget(i)->objectName()));
    }
    front = settings.value(frontKey).toInt();
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
    settings->setValue(frontKey, front);
}
