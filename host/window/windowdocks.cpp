// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/windowdocks.h"

#include "host/window/dataviewpane.h"
#include "host/window/logpane.h"
#include "host/window/targetdetailspane.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QScreen>
#include <QSettings>
#include <QTabBar>

namespace {

const char geometryKey[] = "layout/geometry";
const char stateKey[] = "layout/state";
/// Version of the layout of docks and toolbars; a state of another version is not restored.
const int layoutVersion = 3;

const int minDockLines = 3;
/// The docks get the window's height divided by this.
const int dockDivisor = 4;

} // namespace

WindowDocks::WindowDocks(QMainWindow *mainWindow)
    : QObject(mainWindow)
    , logPane(new LogPane(mainWindow))
    , dataViewPane(new DataViewPane(mainWindow))
    , targetDetailsPane(new TargetDetailsPane(mainWindow))
    , window(mainWindow)
{
    logDock = addDock(tr("Log"), QStringLiteral("logDock"), logPane);
    dataViewDock = addDock(tr("Data views"), QStringLiteral("dataViewDock"), dataViewPane);
    targetDetailsDock
        = addDock(tr("Target details"), QStringLiteral("targetDetailsDock"), targetDetailsPane);
    for (QDockWidget *dock : {logDock, dataViewDock, targetDetailsDock}) {
        dock->hide();
    }
}

QDockWidget *WindowDocks::addDock(const QString &title, const QString &name, QWidget *pane)
{
    auto dock = new QDockWidget(title, window);
    dock->setObjectName(name);
    dock->setWidget(pane);
    // Less than the pane's own minimum: in a low window, the tree needs the height.
    pane->setMinimumHeight(window->fontMetrics().height() * minDockLines);
    connect(dock, &QDockWidget::visibilityChanged, this, &WindowDocks::skipEmptyTabs,
            Qt::QueuedConnection);
    window->addDockWidget(Qt::BottomDockWidgetArea, dock);
    if (logDock) {
        // Tabs leave the height to the tree.
        window->tabifyDockWidget(logDock, dock);
    }
    return dock;
}

QList<QAction *> WindowDocks::viewActions() const
{
    return {logDock->toggleViewAction(), dataViewDock->toggleViewAction(),
            targetDetailsDock->toggleViewAction()};
}

/// Qt keeps the tab bar of docks that are hidden, out of sight but not out of the focus chain.
void WindowDocks::skipEmptyTabs()
{
    const auto bars = window->findChildren<QTabBar *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTabBar *bar : bars) {
        bar->setFocusPolicy(bar->count() > 0 ? Qt::TabFocus : Qt::NoFocus);
    }
}

void WindowDocks::setPlugin(ILoomwrightPlugin *plugin)
{
    dataViewPane->setPlugin(plugin);
    targetDetailsPane->setPlugin(plugin);
    if (targetDetailsPane->isPageNeeded()) {
        targetDetailsDock->show();
    }
}

void WindowDocks::update()
{
    const bool found = dataViewPane->count() > 0;
    dataViewDock->toggleViewAction()->setEnabled(found);
    if (!found) {
        dataViewDock->hide();
    }
    skipEmptyTabs();
}

void WindowDocks::showLog()
{
    if (logDock->isHidden()) {
        logDock->show();
        window->resizeDocks({logDock}, {window->height() / dockDivisor}, Qt::Vertical);
    }
    logDock->raise();
}

void WindowDocks::searchLog()
{
    showLog();
    logPane->focusSearch();
}

void WindowDocks::showNextError()
{
    showLog();
    logPane->showNextError();
}

void WindowDocks::restoreLayout()
{
    const QSettings settings;
    if (!window->restoreGeometry(settings.value(QLatin1String(geometryKey)).toByteArray())) {
        fitScreen();
    }
    window->restoreState(settings.value(QLatin1String(stateKey)).toByteArray(), layoutVersion);
    update();
}

void WindowDocks::saveLayout() const
{
    QSettings settings;
    settings.setValue(QLatin1String(geometryKey), window->saveGeometry());
    settings.setValue(QLatin1String(stateKey), window->saveState(layoutVersion));
}

/// The initial size, in characters, so that it grows with the font, but no larger than the screen.
void WindowDocks::fitScreen()
{
    const QFontMetrics metrics = window->fontMetrics();
    const QSize wanted(metrics.averageCharWidth() * 150, metrics.height() * 45);
    // The window's frame is unknown until it is shown.
    const QSize available = window->screen()->availableSize() * 9 / 10;
    window->resize(wanted.boundedTo(available));
}

void WindowDocks::limitHeight()
{
    const int maxHeight = window->height() / dockDivisor;
    for (QDockWidget *dock : {logDock, dataViewDock, targetDetailsDock}) {
        if (dock->isVisible() && !dock->isFloating() && dock->height() > maxHeight) {
            window->resizeDocks({dock}, {maxHeight}, Qt::Vertical);
        }
    }
}
