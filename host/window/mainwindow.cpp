// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/mainwindow.h"

#include "host/core/pluginsession.h"
#include "host/core/stitcherlocator.h"
#include "host/window/buildpane.h"
#include "host/window/checkpane.h"
#include "host/window/dataviewpane.h"
#include "host/window/droppedfiles.h"
#include "host/window/ingredientpane.h"
#include "host/window/logpane.h"
#include "host/window/problempage.h"
#include "host/window/recentfiles.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const char layoutKey[] = "layout/";
const int listedFailures = 12;

/// A triangle in the colour of text: the style's own one is black on dark backgrounds, too.
QIcon buildIcon(const QPalette &palette)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::ButtonText));
    painter.drawPolygon(QPolygon({QPoint(14, 8), QPoint(54, 32), QPoint(14, 56)}));
    return QIcon(pixmap);
}

QString setting(const char *name)
{
    return QLatin1String(layoutKey) + QLatin1String(name);
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(QApplication::applicationDisplayName());
    setAcceptDrops(true);
    createPanes();
    createActions();
    restoreLayout();
    updateActions();
}

MainWindow::~MainWindow()
{
    releasePlugin();
}

void MainWindow::createPanes()
{
    targetLabel = new QLabel(this);
    targetLabel->setObjectName(QStringLiteral("target"));
    targetLabel->setAccessibleName(tr("Target"));
    QFont bold = targetLabel->font();
    bold.setBold(true);
    targetLabel->setFont(bold);
    targetLabel->setContentsMargins(9, 9, 9, 0);

    ingredientPane = new IngredientPane(this);
    checkPane = new CheckPane(this);
    dataViewPane = new DataViewPane(this);
    logPane = new LogPane(this);
    buildPane = new BuildPane(this);

    leftColumn = new QSplitter(Qt::Vertical, this);
    leftColumn->addWidget(ingredientPane);
    leftColumn->addWidget(checkPane);
    rightColumn = new QSplitter(Qt::Vertical, this);
    rightColumn->addWidget(dataViewPane);
    rightColumn->addWidget(logPane);
    columns = new QSplitter(Qt::Horizontal, this);
    columns->addWidget(leftColumn);
    columns->addWidget(rightColumn);
    leftColumn->setStretchFactor(0, 3);
    leftColumn->setStretchFactor(1, 2);
    columns->setStretchFactor(0, 3);
    columns->setStretchFactor(1, 2);

    auto work = new QWidget(this);
    auto layout = new QVBoxLayout(work);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(targetLabel);
    layout->addWidget(columns, 1);
    layout->addWidget(buildPane);

    problemPage = new ProblemPage(this);
    pages = new QStackedWidget(this);
    pages->addWidget(problemPage);
    pages->addWidget(work);
    setCentralWidget(pages);

    connect(ingredientPane, &IngredientPane::editStarted, this, [this] {
        currentIntake = QStringLiteral("edit");
        intakeErrors.remove(currentIntake);
    });
    connect(ingredientPane, &IngredientPane::editFinished, this, [this] { currentIntake.clear(); });
    connect(checkPane, &CheckPane::checked, this,
            [this] { ingredientPane->setFailures(checkPane->failures()); });
    connect(checkPane, &CheckPane::ingredientChosen, ingredientPane,
            &IngredientPane::showIngredient);
    connect(buildPane, &BuildPane::stopRequested, this, [this] {
        if (runner) {
            runner->stop(tr("It was stopped."));
        }
    });
    connect(problemPage, &ProblemPage::chooseRequested, this, &MainWindow::choosePlugin);
}

void MainWindow::createActions()
{
    const auto add = [this](QMenu *menu, const QString &text, const QKeySequence &shortcut,
                            QStyle::StandardPixmap icon, auto action) {
        return menu->addAction(style()->standardIcon(icon), text, this, action, shortcut);
    };
    QMenu *fileMenu = menuBar()->addMenu(tr("&File"));
    QAction *folder = add(fileMenu, tr("Open &folder…"), QKeySequence(tr("Ctrl+Shift+O")),
                          QStyle::SP_DirOpenIcon, &MainWindow::chooseFolder);
    QAction *files = add(fileMenu, tr("&Add files…"), QKeySequence(tr("Ctrl+I")),
                         QStyle::SP_FileIcon, &MainWindow::chooseFiles);
    recentFiles = new RecentFiles(this);
    fileMenu->addMenu(recentFiles);
    fileMenu->addSeparator();
    QAction *load = add(fileMenu, tr("&Open configuration…"), QKeySequence::Open,
                        QStyle::SP_DialogOpenButton, &MainWindow::chooseConfig);
    QAction *save = add(fileMenu, tr("&Save configuration…"), QKeySequence::Save,
                        QStyle::SP_DialogSaveButton, &MainWindow::chooseConfigToSave);
    fileMenu->addSeparator();
    fileMenu->addAction(tr("Choose &plug-in…"), this, &MainWindow::choosePlugin);
    fileMenu->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence::Quit);

    QMenu *imageMenu = menuBar()->addMenu(tr("I&mage"));
    QAction *checkAction = add(imageMenu, tr("&Check"), QKeySequence(tr("Ctrl+K")),
                               QStyle::SP_DialogApplyButton, &MainWindow::check);
    buildAction = imageMenu->addAction(buildIcon(palette()), tr("&Build"), this, &MainWindow::build,
                                       QKeySequence(tr("Ctrl+B")));
    QMenu *helpMenu = menuBar()->addMenu(tr("&Help"));
    helpMenu->addAction(tr("&About"), this, &MainWindow::showAbout);
    pluginActions = {folder, files, load, save, checkAction};

    QToolBar *toolBar = addToolBar(tr("Steps"));
    toolBar->setObjectName(QStringLiteral("steps"));
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    toolBar->setMovable(false);
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize);
    toolBar->setIconSize({iconSize, iconSize});
    toolBar->addActions({folder, checkAction, buildAction});

    connect(recentFiles, &RecentFiles::chosen, this, &MainWindow::reopen);
}

void MainWindow::restoreLayout()
{
    const QSettings settings;
    if (!restoreGeometry(settings.value(setting("geometry")).toByteArray())) {
        // In characters, so that it grows with the font.
        const QFontMetrics metrics = fontMetrics();
        resize(metrics.averageCharWidth() * 180, metrics.height() * 48);
    }
    restoreState(settings.value(setting("state")).toByteArray());
    columns->restoreState(settings.value(setting("columns")).toByteArray());
    leftColumn->restoreState(settings.value(setting("left")).toByteArray());
    rightColumn->restoreState(settings.value(setting("right")).toByteArray());
}

void MainWindow::saveLayout() const
{
    QSettings settings;
    settings.setValue(setting("geometry"), saveGeometry());
    settings.setValue(setting("state"), saveState());
    settings.setValue(setting("columns"), columns->saveState());
    settings.setValue(setting("left"), leftColumn->saveState());
    settings.setValue(setting("right"), rightColumn->saveState());
}

bool MainWindow::loadPlugin(const QStringList &candidates)
{
    releasePlugin();
    auto loaded = std::make_unique<PluginSession>();
    StatusManager *relay = loaded->statusManager();
    connect(relay, &StatusManager::statusMessage, logPane, &LogPane::addStatus);
    connect(relay, &StatusManager::errorMessage, this, &MainWindow::noteError);
    connect(relay, &StatusManager::dataFileChanged, dataViewPane, &DataViewPane::refreshViews);
    if (!loaded->load(candidates)) {
        problemPage->setProblem(loaded->problem());
        return false;
    }
    session = std::move(loaded);
    // The plug-in proposes an image in the documents folder, which a new account does not have yet.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    targetLabel->setText(
        tr("%1, version %2")
            .arg(session->plugin()->getTargetName(), session->plugin()->getPluginVersion()));
    ingredientPane->setManager(session->ingredientManager());
    checkPane->setManager(session->executionManager());
    dataViewPane->setPlugin(session->plugin());
    pages->setCurrentIndex(1);
    updateActions();
    return true;
}

/// Takes everything of the plug-in out of the panes and ends it.
void MainWindow::releasePlugin()
{
    runner.reset();
    ingredientPane->setManager(nullptr);
    checkPane->setManager(nullptr);
    dataViewPane->setPlugin(nullptr);
    intakeErrors.clear();
    session.reset();
    pages->setCurrentIndex(0);
    updateActions();
}

void MainWindow::updateActions()
{
    const bool isLoaded = session != nullptr;
    for (QAction *action : qAsConst(pluginActions)) {
        action->setEnabled(isLoaded);
    }
    buildAction->setEnabled(isLoaded && !runner);
}

void MainWindow::noteError(const QString &message)
{
    logPane->addError(message);
    if (!currentIntake.isEmpty()) {
        intakeErrors[currentIntake] << message.trimmed();
    }
}

void MainWindow::takeIn(const QString &kind, const std::function<void()> &operation)
{
    currentIntake = kind;
    intakeErrors.remove(kind);
    operation();
    currentIntake.clear();
}

void MainWindow::open(const QStringList &filesAndFolders)
{
    if (!session) {
        return;
    }
    QStringList folders;
    QStringList files;
    for (const QString &each : filesAndFolders) {
        const QString path = QDir::current().absoluteFilePath(each);
        (QFileInfo(path).isDir() ? folders : files) << path;
        recentFiles->add(path);
    }
    IIngredientManager *ingredients = session->ingredientManager();
    if (!folders.isEmpty()) {
        takeIn(QStringLiteral("folder"), [&] {
            for (const QString &folder : qAsConst(folders)) {
                ingredients->generateConfigFromDirectory(folder);
            }
        });
    }
    if (!files.isEmpty()) {
        takeIn(QStringLiteral("file"), [&] {
            for (const QString &file : qAsConst(files)) {
                ingredients->loadIngredientFile(file);
            }
        });
    }
}

void MainWindow::openConfig(const QString &file)
{
    takeIn(QStringLiteral("config"),
           [&] { session->ingredientManager()->loadConfigFromFile(file); });
    recentFiles->add(file);
}

void MainWindow::saveConfig(const QString &file)
{
    if (session->ingredientManager()->saveConfigToFile(file)) {
        statusBar()->showMessage(
            tr("Configuration saved as %1").arg(QDir::toNativeSeparators(file)));
    } else {
        QMessageBox::warning(this, tr("Save configuration"),
                             tr("The configuration could not be saved; the log says why."));
    }
}

bool MainWindow::check()
{
    return checkPane->check();
}

bool MainWindow::confirmBuild()
{
    check();
    QStringList problems;
    const QVector<CheckResult> failures = checkPane->failures();
    for (const CheckResult &failure : failures) {
        problems << failure.ingredientName + QLatin1String(": ") + failure.details;
    }
    for (const QStringList &errors : qAsConst(intakeErrors)) {
        problems += errors;
    }
    if (problems.isEmpty()) {
        return true;
    }
    const int hidden = problems.count() - listedFailures;
    if (hidden > 0) {
        problems = problems.mid(0, listedFailures) + QStringList(tr("… and %1 more").arg(hidden));
    }
    QMessageBox question(QMessageBox::Warning, tr("Build"),
                         tr("Something is wrong with the files of this image:"),
                         QMessageBox::NoButton, this);
    question.setTextFormat(Qt::PlainText);
    question.setInformativeText(problems.join(QLatin1Char('\n')));
    QAbstractButton *anyway = question.addButton(tr("Build &anyway"), QMessageBox::AcceptRole);
    QPushButton *cancel = question.addButton(QMessageBox::Cancel);
    question.setDefaultButton(cancel);
    question.exec();
    return question.clickedButton() == anyway;
}

void MainWindow::build()
{
    if (!session || runner || !confirmBuild()) {
        return;
    }
    const StitcherLocation stitcher = locateStitcher(QString());
    if (stitcher.file.isEmpty()) {
        BuildResult failure;
        failure.reason = stitcher.problem;
        buildPane->showResult(failure);
        emit buildFinished(failure);
        return;
    }
    runner = std::make_unique<BuildRunner>(session.get());
    connect(runner.get(), &BuildRunner::finished, this, &MainWindow::finishBuild);
    updateActions();
    buildPane->showRunning();
    BuildOptions options;
    options.stitcher = stitcher.file;
    runner->start(options);
}

void MainWindow::finishBuild(const BuildResult &result)
{
    runner.release()->deleteLater();
    updateActions();
    buildPane->showResult(result);
    emit buildFinished(result);
}

void MainWindow::choosePlugin()
{
    if (runner) {
        return;
    }
    const QString file = QFileDialog::getOpenFileName(this, tr("Choose a plug-in"), QString(),
                                                      tr("Plug-ins (*.so *.so.*);;All files (*)"));
    if (!file.isEmpty()) {
        loadPlugin({file});
    }
}

void MainWindow::chooseFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Open a folder of files"));
    if (!folder.isEmpty()) {
        open({folder});
    }
}

void MainWindow::chooseFiles()
{
    open(QFileDialog::getOpenFileNames(this, tr("Add files")));
}

void MainWindow::chooseConfig()
{
    const QString file = QFileDialog::getOpenFileName(this, tr("Open a configuration"), QString(),
                                                      tr("Configurations (*.txt);;All files (*)"));
    if (!file.isEmpty()) {
        openConfig(file);
    }
}

void MainWindow::chooseConfigToSave()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Save the configuration"),
                                                      QStringLiteral("config.txt"),
                                                      tr("Configurations (*.txt);;All files (*)"));
    if (!file.isEmpty()) {
        saveConfig(file);
    }
}

/// A recent file is mapped by name when its name fits, as when it was dropped; a configuration is
/// told by its ending.
void MainWindow::reopen(const QString &file)
{
    if (file.endsWith(QLatin1String(".txt"), Qt::CaseInsensitive)) {
        openConfig(file);
    } else {
        open({file});
    }
}

void MainWindow::showAbout()
{
    QMessageBox::about(
        this, tr("About %1").arg(QApplication::applicationDisplayName()),
        tr("%1 %2\n\nA reference host for target plug-ins of the Tamblin Workbench.")
            .arg(QApplication::applicationDisplayName(), QApplication::applicationVersion()));
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (session && !droppedFiles(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    open(droppedFiles(event->mimeData()));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (runner) {
        const auto answer = QMessageBox::question(
            this, tr("Close"), tr("The stitcher is still running. Stop it and close?"),
            QMessageBox::Close | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Close) {
            event->ignore();
            return;
        }
    }
    saveLayout();
    event->accept();
}
