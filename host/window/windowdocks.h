// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class DataViewPane;
class ILoomwrightPlugin;
class LogPane;
class QAction;
class QDockWidget;
class QMainWindow;
class TargetDetailsPane;

/// The panes below the tree, in tabbed docks: log, data views, target details.
class WindowDocks : public QObject
{
    Q_OBJECT

public:
    /// Creates the docks of @p mainWindow.
    explicit WindowDocks(QMainWindow *mainWindow);

    /// The actions that show and hide the docks.
    QList<QAction *> viewActions() const;
    /// Shows the panes for @p plugin; null empties them.
    void setPlugin(ILoomwrightPlugin *plugin);
    /// Offers the data views if there are some.
    void update();
    void showLog();
    /// Shows the log and moves the focus to its search field.
    void searchLog();
    /// Shows the next error in the log.
    void showNextError();

    /// Restores size, position, docks and toolbars of the last session.
    void restoreLayout();
    void saveLayout() const;
    /// Prevents the docks from taking the tree's height when the window gets smaller.
    void limitHeight();

    LogPane *logPane;
    DataViewPane *dataViewPane;
    TargetDetailsPane *targetDetailsPane;

private:
    QDockWidget *addDock(const QString &title, const QString &name, QWidget *pane);
    void fitScreen();
    void skipEmptyTabs();

    QMainWindow *window;
    QDockWidget *logDock = nullptr;
    QDockWidget *dataViewDock;
    QDockWidget *targetDetailsDock;
};
