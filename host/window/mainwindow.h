// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/buildrunner.h"

#include <QMainWindow>
#include <QMap>

#include <functional>
#include <memory>

class BuildPane;
class CheckPane;
class DataViewPane;
class IngredientPane;
class LogPane;
class PluginSession;
class ProblemPage;
class QLabel;
class QSplitter;
class QStackedWidget;
class RecentFiles;

/// The window: its panes show what the plug-in offers, its actions call what the plug-in does.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Loads a plug-in in the place of the one at hand. On failure the window offers to choose one.
    bool loadPlugin(const QStringList &candidates);

    /// Maps folders and files to ingredients, by file name.
    void open(const QStringList &filesAndFolders);
    void openConfig(const QString &file);
    void saveConfig(const QString &file);
    /// Checks all files; true when every check passed.
    bool check();
    /// Checks, asks when something is wrong, and runs the stitcher.
    void build();

signals:
    void buildFinished(const BuildResult &result);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void createPanes();
    void createActions();
    void restoreLayout();
    void saveLayout() const;

    void releasePlugin();
    void choosePlugin();
    void chooseFolder();
    void chooseFiles();
    void chooseConfig();
    void chooseConfigToSave();
    void reopen(const QString &file);
    void showAbout();

    /// Runs an operation that takes files in; its errors are kept until the next one of its kind.
    void takeIn(const QString &kind, const std::function<void()> &operation);
    void noteError(const QString &message);
    bool confirmBuild();
    void finishBuild(const BuildResult &result);
    void updateActions();

    std::unique_ptr<PluginSession> session;
    std::unique_ptr<BuildRunner> runner;
    /// Errors of the last intake of each kind, which a build asks about.
    QMap<QString, QStringList> intakeErrors;
    QString currentIntake;

    QStackedWidget *pages = nullptr;
    ProblemPage *problemPage = nullptr;
    QSplitter *columns = nullptr;
    QSplitter *leftColumn = nullptr;
    QSplitter *rightColumn = nullptr;
    QLabel *targetLabel = nullptr;
    IngredientPane *ingredientPane = nullptr;
    CheckPane *checkPane = nullptr;
    DataViewPane *dataViewPane = nullptr;
    LogPane *logPane = nullptr;
    BuildPane *buildPane = nullptr;
    RecentFiles *recentFiles = nullptr;
    QList<QAction *> pluginActions;
    QAction *buildAction = nullptr;
};
