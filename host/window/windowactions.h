// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class ImageSession;
class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class RecentFiles;
class UndoHistory;

/// The actions of the window, with their menus and the toolbar, and when each can be used.
class WindowActions : public QObject
{
    Q_OBJECT

public:
    /// Makes the actions and puts them into the menu bar and a toolbar of @p window. The history
    /// must outlive this object.
    WindowActions(QMainWindow *window, UndoHistory *history);

    /// Enables what can be used in the present state of @p session.
    void update(const ImageSession &session);
    /// Adds @p actions, which show and hide a part of the window each, to the View menu.
    void addViews(const QList<QAction *> &actions);
    /// Adds @p actions on the current row to the Edit menu.
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
    QAction *build;
    QAction *stop;
    QAction *writeManifest;
    QAction *copyCommand;
    QAction *about;
    RecentFiles *recentFiles;

private:
    QAction *add(QMenu *menu, const QString &text, const QString &shortcut, const char *icon);
    void createFileMenu();
    void createEditMenu();
    void createImageMenu();
    void createToolBar();

    QMainWindow *window;
    UndoHistory *history;
    QMenu *editMenu;
    QMenu *viewMenu;
};
