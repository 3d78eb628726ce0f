// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/dataviewpane.h"

#include "host/window/bittoggleproxymodel.h"
#include "plugin/idataview.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QLabel>
#include <QTabBar>
#include <QTableView>
#include <QVBoxLayout>

DataViewPane::DataViewPane(QWidget *parent)
    : QTabWidget(parent)
{
    setObjectName(QStringLiteral("dataViews"));
    setAccessibleName(tr("Data views"));
    setDocumentMode(true);
    setTabBarAutoHide(true);
    // The Tab key would get stuck here while the tab bar is hidden.
    setFocusProxy(nullptr);
    setFocusPolicy(Qt::NoFocus);
}

void DataViewPane::setPlugin(ILoomwrightPlugin *newPlugin)
{
    plugin = newPlugin;
    refreshViews();
}

void DataViewPane::refreshViews()
{
    const QString shownTab = tabText(currentIndex());
    while (count() > 0) {
        delete widget(0);
    }
    const QList<IDataView *> views
        = plugin ? plugin->getIngredientManager()->getSupportedViews() : QList<IDataView *>();
    for (IDataView *view : views) {
        if (!view || !view->getDataModel()) {
            continue;
        }
        // In the text of a tab, an ampersand marks a mnemonic.
        QString name = view->getDisplayName();
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        addTab(createPage(view), name);
        if (name == shownTab) {
            setCurrentIndex(count() - 1);
        }
    }
    // A single tab would be a stop of the Tab key where nothing can be done.
    tabBar()->setFocusPolicy(count() > 1 ? Qt::TabFocus : Qt::NoFocus);
}

QWidget *DataViewPane::createPage(IDataView *view)
{
    auto page = new QWidget(this);
    auto layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    auto note
        = new QLabel(tr("%1: not saved and not part of the image. The rows are the plug-in's, "
                        "and may differ from those in the data file.")
                         .arg(view->getDisplayName()),
                     page);
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    layout->addWidget(note);
    layout->addWidget(createTable(view->getDataModel(), view->getDisplayName()));
    return page;
}

QWidget *DataViewPane::createTable(QAbstractItemModel *model, const QString &name)
{
    auto table = new QTableView(this);
    auto shown = new BitToggleProxyModel(table);
    shown->setSourceModel(model);
    table->setModel(shown);
    table->setObjectName(QStringLiteral("dataView"));
    table->setAccessibleName(name);
    table->setTabKeyNavigation(false);
    table->resizeColumnsToContents();
    return table;
}
