// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QTabWidget>

class ILoomwrightPlugin;
class QAbstractItemModel;

/// The target-details page and the data views that the plug-in offers, a tab each.
class DataViewPane : public QTabWidget
{
    Q_OBJECT

public:
    explicit DataViewPane(QWidget *parent = nullptr);
    ~DataViewPane() override;

    /// Shows the pages of @p newPlugin, which must outlive this pane or be replaced by null.
    void setPlugin(ILoomwrightPlugin *newPlugin);
    /// Fetches the data views anew: the plug-in deletes the old ones when it loads a data file.
    void refreshViews();

private:
    void releaseDetails();
    QWidget *createView(QAbstractItemModel *model, const QString &name);

    ILoomwrightPlugin *plugin = nullptr;
    /// The plug-in's widget, which stays its own.
    QPointer<QWidget> details;
};
