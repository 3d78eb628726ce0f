// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/dataviewpane.h"

#include "host/window/bitdelegate.h"
#include "host/window/bittogglemodel.h"
#include "plugin/idataview.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QHeaderView>
#include <QTableView>

DataViewPane::DataViewPane(QWidget *parent)
    : QTabWidget(parent)
{
    setObjectName(QStringLiteral("dataViews"));
    setAccessibleName(tr("Target details and data views"));
}

DataViewPane::~DataViewPane()
{
    releaseDetails();
}

void DataViewPane::releaseDetails()
{
    if (details) {
        details->hide();
        details->setParent(nullptr);
    }
}

void DataViewPane::setPlugin(ILoomwrightPlugin *newPlugin)
{
    releaseDetails();
    plugin = newPlugin;
    details = plugin ? plugin->getTargetDetailsWidget() : nullptr;
    if (details) {
        addTab(details, tr("Target &details"));
    }
    refreshViews();
}

void DataViewPane::refreshViews()
{
    const QString shownTab = tabText(currentIndex());
    for (int tab = count() - 1; tab >= 0; --tab) {
        if (widget(tab) != details) {
            delete widget(tab);
        }
    }
    if (!plugin) {
        return;
    }
    const QList<IDataView *> views = plugin->getIngredientManager()->getSupportedViews();
    for (IDataView *view : views) {
        const QString name = view->getDisplayName();
        addTab(createView(view->getDataModel(), name), name);
        if (name == shownTab) {
            setCurrentIndex(count() - 1);
        }
    }
}

QWidget *DataViewPane::createView(QAbstractItemModel *model, const QString &name)
{
    auto table = new QTableView(this);
    auto shown = new BitToggleModel(table);
    shown->setSourceModel(model);
    table->setModel(shown);
    table->setItemDelegate(new BitDelegate(table));
    table->setObjectName(QStringLiteral("dataView"));
    table->setAccessibleName(name);
    table->setTabKeyNavigation(false);
    table->resizeColumnsToContents();
    return table;
}
