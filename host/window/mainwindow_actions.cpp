// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/mainwindow.h"

#include "host/window/lowerpanes.h"
#include "host/window/problempane.h"
#include "host/window/projectfiles.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QUndoStack>

#include <KMessageWidget>
#include <KRecentFilesMenu>

namespace {

bool always(const Session &session)
{
    Q_UNUSED(session)
    return true;
}

bool isLoaded(const Session &session)
{
    return session.isLoaded();
}

bool isIdle(const Session &session)
{
    return !session.isBuilding();
}

bool canChange(const Session &session)
{
    return isLoaded(session) && isIdle(session);
}

} // namespace

/// Adds an action with an explicit shortcut: some platform themes define none for Quit and others.
template <typename Receiver, typename Operation>
QAction *MainWindow::add(QMenu *menu, const QString &text, const QString &shortcut,
                         Receiver *receiver, Operation operation, Condition isPossible)
{
    QAction *action = menu->addAction(text);
    action->setShortcut(QKeySequence(shortcut));
    connect(action, &QAction::triggered, receiver, [this, receiver, operation] {
        delete notice;
        // It acts on what is being typed.
        ingredientPane->commitEditor();
        (receiver->*operation)();
    });
    conditions.append({action, isPossible});
    return action;
}

void MainWindow::createActions()
{
    auto toolBar = new QToolBar(tr("Toolbar"), this);
    toolBar->setObjectName(QStringLiteral("steps"));
    toolBar->setMovable(false);
    addToolBar(toolBar);
    createFileMenu(toolBar);
    createEditMenu();
    createViewMenu(toolBar);
    createImageMenu(toolBar);
    QMenu *helpMenu = menuBar()->addMenu(tr("&Help"));
    add(helpMenu, tr("&About"), {}, this, &MainWindow::showAbout, always);
}

void MainWindow::createFileMenu(QToolBar *toolBar)
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    toolBar->addAction(add(menu, tr("Open &folder…"), tr("Ctrl+Shift+O"), projectFiles,
                           &ProjectFiles::chooseFolder, canChange));
    add(menu, tr("&Add files…"), tr("Ctrl+I"), projectFiles, &ProjectFiles::chooseFiles, canChange);
    conditions.append({menu->addMenu(recentFiles), canChange});
    menu->addSeparator();
    add(menu, tr("&Open project or configuration…"), tr("Ctrl+O"), projectFiles,
        &ProjectFiles::chooseProject, canChange);
    add(menu, tr("&Save project"), tr("Ctrl+S"), projectFiles, &ProjectFiles::save, isLoaded);
    add(menu, tr("Save project &as…"), tr("Ctrl+Shift+S"), projectFiles, &ProjectFiles::saveAs,
        isLoaded);
    add(menu, tr("Sa&ve configuration…"), {}, projectFiles, &ProjectFiles::saveConfigurationAs,
        isLoaded);
    menu->addSeparator();
    add(menu, tr("Se&ttings…"), {}, this, &MainWindow::changeSettings, isIdle)
        ->setMenuRole(QAction::PreferencesRole);
    menu->addSeparator();
    add(menu, tr("&Quit"), tr("Ctrl+Q"), this, &MainWindow::close, always)
        ->setMenuRole(QAction::QuitRole);
    connect(recentFiles, &KRecentFilesMenu::urlTriggered, this,
            [this](const QUrl &url) { open({url.toLocalFile()}); });
}

void MainWindow::createEditMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Edit"));
    QAction *undo = session.history()->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence(tr("Ctrl+Z")));
    QAction *redo = session.history()->createRedoAction(this, tr("&Redo"));
    redo->setShortcut(QKeySequence(tr("Ctrl+Shift+Z")));
    menu->addActions({undo, redo});
    menu->addSeparator();
    menu->addActions(ingredientPane->rowActions());
    conditions.append(
        {undo, [](const Session &now) { return isIdle(now) && now.history()->canUndo(); }});
    conditions.append(
        {redo, [](const Session &now) { return isIdle(now) && now.history()->canRedo(); }});
}

void MainWindow::createViewMenu(const QToolBar *toolBar)
{
    QMenu *menu = menuBar()->addMenu(tr("&View"));
    add(menu, tr("&Find in the log"), tr("Ctrl+F"), lowerPanes, &LowerPanes::searchLog, always);
    menu->addSeparator();
    menu->addAction(toolBar->toggleViewAction());
    menu->addActions(lowerPanes->viewActions());
}

void MainWindow::createImageMenu(QToolBar *toolBar)
{
    QMenu *menu = menuBar()->addMenu(tr("I&mage"));
    toolBar->addAction(
        add(menu, tr("&Rescan folder"), tr("F5"), &session, &Session::rescan,
            [](const Session &now) { return canChange(now) && now.hasDirectories(); }));
    add(menu, tr("Next &problem"), tr("F8"), problemPane, &ProblemPane::showNext,
        [](const Session &now) { return !now.problems().isEmpty(); });
    menu->addSeparator();
    toolBar->addAction(add(menu, tr("&Build"), tr("Ctrl+B"), this, &MainWindow::build, canChange));
    toolBar->addAction(
        add(menu, tr("&Stop"), tr("Ctrl+."), &session, &Session::stopBuild,
            [](const Session &now) { return now.buildState() == BuildState::Running; }));
    menu->addSeparator();
    add(menu, tr("&Write manifest"), {}, &session, &Session::writeManifest,
        [](const Session &now) { return now.buildState() == BuildState::Current; });
    add(menu, tr("&Copy as terminal command"), {}, this, &MainWindow::copyCommand, isLoaded);
}

void MainWindow::updateActions()
{
    for (const auto &each : qAsConst(conditions)) {
        each.first->setEnabled(each.second(session));
    }
}
