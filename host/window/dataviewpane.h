// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QTabWidget>

class IDataView;
class ILoomwrightPlugin;
class QAbstractItemModel;

/// The data views of the plug-in, one tab each.
class DataViewPane : public QTabWidget
{
    Q_OBJECT

public:
    explicit DataViewPane(QWidget *parent = nullptr);

    /// Shows the views of @p newPlugin, which must outlive this pane; null shows none.
    void setPlugin(ILoomwrightPlugin *newPlugin);
    /// Gets the data views again: the plug-in deletes the old ones when it loads a data file.
    void refreshViews();

private:
    QWidget *createPage(IDataView *view);
    QWidget *createTable(QAbstractItemModel *model, const QString &name);

    ILoomwrightPlugin *plugin = nullptr;
};
