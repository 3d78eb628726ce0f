// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/window/ingredientpane.h"
#include "host/window/session.h"

#include <QMainWindow>
#include <QPointer>

class BuildPane;
class HintPage;
class KMessageWidget;
class KRecentFilesMenu;
class KSqueezedTextLabel;
class LowerPanes;
class ProblemPane;
class ProjectFiles;
class QAction;
class QMenu;
class QRubberBand;
class QSplitter;
class QStackedWidget;
class QToolBar;
class QVBoxLayout;

/// The main window: connects panes and actions to the session.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Loads a plug-in in place of the current one, which stays if that fails.
    bool loadPlugin(const QStringList &candidates);
    /// Opens folders, files, configurations and a project.
    void open(const QStringList &paths);
    void restoreLastProject();
    /// Asks if there are problems, and runs the stitcher.
    void build();
    /// Stores size, position and what is shown for the next session.
    void saveForNextSession() const;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    using Condition = bool (*)(const Session &);

    void createPanes();
    void connectSession();

    void createActions();
    void createFileMenu(QToolBar *toolBar);
    void createEditMenu();
    void createViewMenu(const QToolBar *toolBar);
    void createImageMenu(QToolBar *toolBar);
    void updateActions();
    template <typename Receiver, typename Operation>
    QAction *add(QMenu *menu, const QString &text, const QString &shortcut, Receiver *receiver,
                 Operation operation, Condition isPossible);

    void showPlugin();
    void showState();
    void showTitle();
    void showFocus();
    void keepFocus(const QWidget *old, const QWidget *now);
    void changeSettings();
    void copyCommand();
    void showAbout();
    void startLog(const QString &stitcher);
    void finishLog(const BuildResult &result);
    void showNotice(const QString &text);
    std::optional<IngredientPane::FileRow> rowFor(const QDropEvent &event) const;

    Session session;
    LowerPanes *lowerPanes;
    KRecentFilesMenu *recentFiles;
    ProjectFiles *projectFiles;

    QSplitter *splitter = nullptr;
    QStackedWidget *pages = nullptr;
    HintPage *noPluginPage = nullptr;
    HintPage *startHint = nullptr;
    KSqueezedTextLabel *targetLabel = nullptr;
    KSqueezedTextLabel *statusLabel = nullptr;
    QVBoxLayout *workLayout = nullptr;
    QPointer<KMessageWidget> notice;
    IngredientPane *ingredientPane = nullptr;
    ProblemPane *problemPane = nullptr;
    BuildPane *buildPane = nullptr;
    QRubberBand *dropFrame;
    /// When each action is enabled.
    QVector<QPair<QAction *, Condition>> conditions;
};
