// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/dataviewpane.h"

#include "host/window/bittoggleproxymodel.h"
#include "plugin/idataview.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

DataViewPane::DataViewPane(QWidget *parent)
    : QTabWidget(parent)
{
    setObjectName(QStringLiteral("dataViews"));
    setAccessibleName(tr("Data views"));
    setDocumentMode(true);
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
        if (!view) {
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
}

QWidget *DataViewPane::createPage(IDataView *view)
{
    auto page = new QWidget(this);
    auto layout = new QVBoxLayout(page);
    const auto addNote = [page, layout](const QString &text) {
        auto note = new QLabel(text, page);
        note->setObjectName(QStringLiteral("dataViewNote"));
        note->setWordWrap(true);
        layout->addWidget(note);
    };
    QAbstractItemModel *model = view->getDataModel();
    if (!model) {
        addNote(tr("This view has no data."));
        layout->addStretch();
        return page;
    }
    // Such a view has nothing to do with files, neither with the image nor with the data file.
    if (view->exportData().isEmpty()) {
        addNote(tr("The rows are those of the target; the data file does not change them. The "
                   "settings are not saved and are not part of the image."));
    }
    layout->addWidget(createTable(model, view->getDisplayName()));
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
