// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/windowactions.h"

#include "host/window/session.h"
#include "host/window/undohistory.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <KRecentFilesMenu>

WindowActions::WindowActions(QMainWindow *mainWindow, UndoHistory *undoHistory)
    : QObject(mainWindow)
    , window(mainWindow)
    , history(undoHistory)
{
    createFileMenu();
    createEditMenu();
    viewMenu = window->menuBar()->addMenu(tr("&View"));
    searchLog = add(viewMenu, tr("&Find in the log"), tr("Ctrl+F"));
    viewMenu->addSeparator();
    createImageMenu();
    QMenu *helpMenu = window->menuBar()->addMenu(tr("&Help"));
    about = add(helpMenu, tr("&About"));
    createToolBar();
}

/// Explicit shortcuts: some platform themes define none for Quit and others.
QAction *WindowActions::add(QMenu *menu, const QString &text, const QString &shortcut)
{
    QAction *action = menu->addAction(text);
    action->setShortcut(QKeySequence(shortcut));
    return action;
}

void WindowActions::createFileMenu()
{
    QMenu *menu = window->menuBar()->addMenu(tr("&File"));
    openFolder = add(menu, tr("Open &folder…"), tr("Ctrl+Shift+O"));
    addFiles = add(menu, tr("&Add files…"), tr("Ctrl+I"));
    recentFiles = new KRecentFilesMenu(tr("&Recent"), window);
    connect(recentFiles, &QMenu::aboutToShow, this, &WindowActions::escapeRecentFiles);
    menu->addMenu(recentFiles);
    menu->addSeparator();
    openProject = add(menu, tr("&Open project…"), tr("Ctrl+O"));
    saveProject = add(menu, tr("&Save project"), tr("Ctrl+S"));
    saveProjectAs = add(menu, tr("Save project &as…"), tr("Ctrl+Shift+S"));
    menu->addSeparator();
    openConfiguration = add(menu, tr("Open &configuration…"));
    saveConfiguration = add(menu, tr("Sa&ve configuration…"));
    menu->addSeparator();
    choosePlugin = add(menu, tr("Choose &plug-in…"));
    settings = add(menu, tr("Se&ttings…"));
    settings->setMenuRole(QAction::PreferencesRole);
    menu->addSeparator();
    quit = add(menu, tr("&Quit"), tr("Ctrl+Q"));
    quit->setMenuRole(QAction::QuitRole);
}

/// In the text of an action, an ampersand marks a mnemonic.
void WindowActions::escapeRecentFiles()
{
    const QList<QAction *> files = recentFiles->actions();
    for (QAction *file : files) {
        // It may have been shown before.
        QString text = file->text().replace(QLatin1String("&&"), QLatin1String("&"));
        file->setText(text.replace(QLatin1Char('&'), QLatin1String("&&")));
    }
}

void WindowActions::createEditMenu()
{
    editMenu = window->menuBar()->addMenu(tr("&Edit"));
    undo = history->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence(tr("Ctrl+Z")));
    redo = history->createRedoAction(this, tr("&Redo"));
    redo->setShortcut(QKeySequence(tr("Ctrl+Shift+Z")));
    editMenu->addActions({undo, redo});
    editMenu->addSeparator();
}

void WindowActions::createImageMenu()
{
    QMenu *menu = window->menuBar()->addMenu(tr("I&mage"));
    rescan = add(menu, tr("&Rescan folder"), tr("F5"));
    nextProblem = add(menu, tr("Next &problem"), tr("F8"));
    menu->addSeparator();
    build = add(menu, tr("&Build"), tr("Ctrl+B"));
    stop = add(menu, tr("&Stop"), tr("Ctrl+."));
    menu->addSeparator();
    writeManifest = add(menu, tr("&Write manifest"));
    copyCommand = add(menu, tr("&Copy as terminal command"));
}

void WindowActions::createToolBar()
{
    QToolBar *toolBar = window->addToolBar(tr("Toolbar"));
    toolBar->setObjectName(QStringLiteral("steps"));
    toolBar->setMovable(false);
    toolBar->addActions({openFolder, rescan, build, stop});
    addViews({toolBar->toggleViewAction()});
}

void WindowActions::addViews(const QList<QAction *> &actions)
{
    viewMenu->addActions(actions);
}

void WindowActions::addRowActions(const QList<QAction *> &actions)
{
    editMenu->addActions(actions);
}

void WindowActions::update(const Session &session)
{
    const bool loaded = session.isLoaded();
    const bool building = session.isBuilding();
    for (QAction *action : {openFolder, addFiles, openProject, openConfiguration, build}) {
        action->setEnabled(loaded && !building);
    }
    for (QAction *action : {saveProject, saveProjectAs, saveConfiguration, copyCommand}) {
        action->setEnabled(loaded);
    }
    recentFiles->menuAction()->setVisible(loaded && !building);
    choosePlugin->setEnabled(!building);
    settings->setEnabled(!building);
    rescan->setEnabled(loaded && !building && session.hasDirectories());
    stop->setEnabled(session.buildState() == BuildState::Running);
    undo->setEnabled(history->canUndo() && !building);
    redo->setEnabled(history->canRedo() && !building);
    nextProblem->setEnabled(!session.problems().isEmpty());
    writeManifest->setEnabled(loaded && session.buildState() == BuildState::Current);
}
