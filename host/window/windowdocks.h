// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class DataViewPane;
class ILoomwrightPlugin;
class Session;
class LogPane;
class ProblemPane;
class QAction;
class QDockWidget;
class QMainWindow;
class TargetDetailsPane;

/// The panes around the tree, in tabbed docks: problems, log, data views, target details.
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
    void update(const Session &session);
    void showNextProblem();

    /// Restores size, position, docks and toolbars of the last session.
    void restoreLayout();
    void saveLayout() const;
    /// Prevents the docks from taking the tree's height when the window gets smaller.
    void limitHeight();

    ProblemPane *problemPane;
    LogPane *logPane;
    DataViewPane *dataViewPane;
    TargetDetailsPane *targetDetailsPane;

private:
    QDockWidget *addDock(const QString &title, const QString &name, QWidget *pane);
    void fitScreen();

    QMainWindow *window;
    QDockWidget *problemDock = nullptr;
    QDockWidget *logDock;
    QDockWidget *dataViewDock;
    QDockWidget *targetDetailsDock;
    bool hasDataViews = false;
};
