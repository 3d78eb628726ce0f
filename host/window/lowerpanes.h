// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QTabWidget>

class DataViewPane;
class ILoomwrightPlugin;
class LogPane;
class QAction;
class QSettings;
class TargetDetailsPane;

/// The panes below the tree, in tabs: log, data views, target details. At the start all are hidden.
class LowerPanes : public QTabWidget
{
    Q_OBJECT

public:
    explicit LowerPanes(QWidget *parent = nullptr);

    /// The actions that show and hide the panes.
    QList<QAction *> viewActions() const;
    /// Shows the panes for @p plugin; null empties them.
    void setPlugin(ILoomwrightPlugin *plugin);
    /// Offers the data views if there are some.
    void offerDataViews();
    void showLog();
    /// Shows the log and moves the focus to its search field.
    void searchLog();
    /// Shows the next error of the last build in the log.
    void showNextBuildError();

    /// Shows the panes that were shown when the layout was saved.
    void restoreLayout(const QSettings &settings);
    void saveLayout(QSettings *settings) const;

    LogPane *logPane;
    DataViewPane *dataViewPane;
    TargetDetailsPane *targetDetailsPane;

private:
    void addPane(QWidget *pane, const QString &title);
    void bringToFront(int index);
    void showPanes();

    /// By the index of the tab: checked if the user wants the pane, enabled if there is something
    /// in it.
    QList<QAction *> actions;
    int front = 0; ///< The index of the tab that the user wants in front.
};
