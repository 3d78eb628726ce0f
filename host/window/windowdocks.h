// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class DataViewPane;
class ILoomwrightPlugin;
class ImageSession;
class LogPane;
class ProblemPane;
class QAction;
class QDockWidget;
class QMainWindow;
class TargetDetailsPane;

/// The panes around the tree, in docks one on the other: problems, log, data views, target details.
class WindowDocks : public QObject
{
    Q_OBJECT

public:
    /// Makes the docks of @p mainWindow.
    explicit WindowDocks(QMainWindow *mainWindow);

    /// The actions that show and hide a dock each.
    QList<QAction *> viewActions() const;
    /// Shows what belongs to @p plugin; null takes it all out.
    void setPlugin(ILoomwrightPlugin *plugin);
    void update(const ImageSession &session);
    void showNextProblem();

    /// Size, position, docks and toolbars as they were the last time.
    void restoreLayout();
    void saveLayout() const;
    /// Keeps the docks from taking the height of the tree when the window gets smaller.
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
