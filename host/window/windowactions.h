// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class Session;
class KRecentFilesMenu;
class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class UndoHistory;

/// The actions of the window, with their menus and the toolbar, and when each is enabled.
class WindowActions : public QObject
{
    Q_OBJECT

public:
    /// Creates the actions and adds them to the menu bar and a toolbar of @p window. The history
    /// must outlive this object.
    WindowActions(QMainWindow *window, UndoHistory *history);

    /// Enables the actions that are possible in the current state of @p session.
    void update(const Session &session);
    /// Adds @p actions, each of which shows or hides a part of the window, to the View menu.
    void addViews(const QList<QAction *> &actions);
    /// Adds @p actions, which apply to the current row, to the Edit menu.
    void addRowActions(const QList<QAction *> &actions);

    QAction *openFolder;
    QAction *addFiles;
    QAction *openProject;
    QAction *saveProject;
    QAction *saveProjectAs;
    QAction *openConfiguration;
    QAction *saveConfiguration;
    QAction *choosePlugin;
    QAction *settings;
    QAction *quit;
    QAction *undo;
    QAction *redo;
    QAction *rescan;
    QAction *nextProblem;
    QAction *searchLog;
    QAction *build;
    QAction *stop;
    QAction *writeManifest;
    QAction *copyCommand;
    QAction *about;
    KRecentFilesMenu *recentFiles;

private:
    QAction *add(QMenu *menu, const QString &text, const QString &shortcut = {});
    void createFileMenu();
    void escapeRecentFiles();
    void createEditMenu();
    void createImageMenu();
    void createToolBar();

    QMainWindow *window;
    UndoHistory *history;
    QMenu *editMenu;
    QMenu *viewMenu;
};
