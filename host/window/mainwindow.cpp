// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/mainwindow.h"

#include "host/core/paths.h"
#include "host/core/pluginfiles.h"
#include "host/core/stitcher.h"
#include "host/window/buildpane.h"
#include "host/window/dataviewpane.h"
#include "host/window/hintpage.h"
#include "host/window/ingredientpane.h"
#include "host/window/inputkind.h"
#include "host/window/logpane.h"
#include "host/window/lowerpanes.h"
#include "host/window/problempane.h"
#include "host/window/problemtext.h"
#include "host/window/projectfiles.h"
#include "host/window/questions.h"
#include "host/window/settings.h"
#include "host/window/settingsdialog.h"
#include "host/window/statustext.h"
#include "host/window/windowlayout.h"
#include "plugin/iloomwrightplugin.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <QRubberBand>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTreeView>
#include <QVBoxLayout>

#include <KMessageWidget>
#include <KRecentFilesMenu>
#include <KSqueezedTextLabel>
#include <algorithm>

/// Resources of a static library must be registered explicitly, outside of any namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(window);
}

namespace {

const int maxNoticeLines = 4;
/// The height from which the whole start hint is shown; below it, the tree needs the space.
const int minLinesForHint = 30;

/// Creates a label that elides what does not fit.
KSqueezedTextLabel *createElidedLabel(const QString &name)
{
    auto label = new KSqueezedTextLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextElideMode(Qt::ElideRight);
    return label;
}

/// Screen readers read all of @p text.
void showElided(KSqueezedTextLabel *label, const QString &text)
{
    label->setText(text);
    label->setAccessibleName(text);
}

/// The local files and folders that are dragged.
QStringList droppedFiles(const QDropEvent &event)
{
    QStringList files;
    const QList<QUrl> urls = event.mimeData()->urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile()) {
            files.append(url.toLocalFile());
        }
    }
    return files;
}

/// The terminal command that builds the image from the values of @p session.
QString terminalCommand(const Session &session)
{
    QStringList words{QStringLiteral("loomwright"), QStringLiteral("--plugin"),
                      session.pluginFile()};
    for (const Ingredient &ingredient : session.ingredients()) {
        const QString value = ingredient.text();
        if (!value.isEmpty()) {
            words << QStringLiteral("--set") << ingredient.id.name + QLatin1Char('=') + value;
        }
    }
    words << QStringLiteral("build");
    std::transform(words.begin(), words.end(), words.begin(), shellQuoted);
    return words.join(QLatin1Char(' '));
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , lowerPanes(new LowerPanes(this))
    , recentFiles(new KRecentFilesMenu(tr("&Recent"), this))
    , projectFiles(new ProjectFiles(&session, recentFiles, this))
    , dropFrame(new QRubberBand(QRubberBand::Rectangle, this))
{
    registerResources();
    setWindowIcon(QIcon(QStringLiteral(":/loomwright.png")));
    setAcceptDrops(true);
    createPanes();
    connectSession();
    createActions();
    connect(qApp, &QApplication::focusChanged, this, &MainWindow::showFocus);
    connect(qApp, &QApplication::focusChanged, this, &MainWindow::keepFocus);
    restoreLayout(this, splitter, lowerPanes);
    session.setStitcher(readSettings().stitcherFile);
    showPlugin();
}

MainWindow::~MainWindow()
{
    // The session deletes the plug-in before the widgets that show it are deleted.
    lowerPanes->setPlugin(nullptr);
    disconnect(&session, nullptr, this, nullptr);
    disconnect(qApp, nullptr, this, nullptr);
    delete centralWidget();
}

void MainWindow::createPanes()
{
    targetLabel = createElidedLabel(QStringLiteral("target"));
    QFont bold = targetLabel->font();
    bold.setBold(true);
    targetLabel->setFont(bold);
    ingredientPane = new IngredientPane(&session, this);
    startHint = new HintPage(tr("Drop a folder of firmware files here"), tr("Open folder…"), this);
    startHint->setObjectName(QStringLiteral("startHint"));
    startHint->setText(tr("Files are assigned by their names. You can also drop single files, a "
                          "configuration or a project, or edit the rows above."));
    startHint->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Sunken));
    problemPane = new ProblemPane(this);
    buildPane = new BuildPane(&session, this);

    auto work = new QWidget(this);
    workLayout = new QVBoxLayout(work);
    workLayout->addWidget(targetLabel);
    workLayout->addWidget(ingredientPane, 1);
    workLayout->addWidget(startHint);
    workLayout->addWidget(problemPane);
    workLayout->addWidget(buildPane);

    noPluginPage = new HintPage(tr("No plug-in is loaded"), tr("&Choose a plug-in…"), this);
    noPluginPage->setObjectName(QStringLiteral("noPlugin"));
    pages = new QStackedWidget(this);
    pages->addWidget(noPluginPage);
    pages->addWidget(work);
    splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(pages);
    splitter->addWidget(lowerPanes);
    // Only the proportion counts, if no pane is smaller than its minimum.
    splitter->setSizes({4000, 1000});
    setCentralWidget(splitter);
    ingredientPane->setFocus();

    statusLabel = createElidedLabel(QStringLiteral("status"));
    statusBar()->addWidget(statusLabel, 1);
}

void MainWindow::connectSession()
{
    connect(&session, &Session::statusMessage, lowerPanes->logPane, &LogPane::addStatus);
    connect(&session, &Session::errorMessage, lowerPanes->logPane, &LogPane::addError);
    connect(&session, &Session::dataFileChanged, lowerPanes->dataViewPane,
            &DataViewPane::refreshViews);
    connect(&session, &Session::pluginAboutToChange, lowerPanes,
            [this] { lowerPanes->setPlugin(nullptr); });
    connect(&session, &Session::pluginChanged, this, &MainWindow::showPlugin);
    connect(&session, &Session::busyChanged, this, [this](bool isBusy) {
        if (isBusy) {
            delete notice;
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } else {
            QApplication::restoreOverrideCursor();
        }
    });
    connect(&session, &Session::noticed, this, &MainWindow::showNotice);
    connect(&session, &Session::changed, this, &MainWindow::showState);
    connect(&session, &Session::changed, lowerPanes, &LowerPanes::offerDataViews);
    connect(&session, &Session::buildStarted, this, &MainWindow::startLog);
    connect(&session, &Session::buildFinished, this, &MainWindow::finishLog);
    connect(&session, &Session::projectChanged, this, &MainWindow::showTitle);

    connect(problemPane, &ProblemPane::ingredientChosen, ingredientPane,
            &IngredientPane::showIngredient);
    connect(problemPane, &ProblemPane::settingsRequested, this, &MainWindow::changeSettings);
    connect(noPluginPage, &HintPage::requested, this, &MainWindow::changeSettings);
    connect(startHint, &HintPage::requested, projectFiles, &ProjectFiles::chooseFolder);
    connect(buildPane, &BuildPane::noticed, this, &MainWindow::showNotice);
    connect(buildPane, &BuildPane::errorsRequested, lowerPanes, &LowerPanes::showNextBuildError);
    connect(lowerPanes->logPane, &LogPane::noticed, this, &MainWindow::showNotice);
    connect(lowerPanes->logPane, &LogPane::buildErrorsChanged, buildPane,
            &BuildPane::setErrorLines);
}

bool MainWindow::loadPlugin(const QStringList &candidates)
{
    if (session.loadPlugin(candidates)) {
        return true;
    }
    noPluginPage->setText(session.pluginProblem());
    if (session.isLoaded()) {
        showNotice(session.pluginProblem());
    }
    return false;
}

void MainWindow::showPlugin()
{
    const bool loaded = session.isLoaded();
    pages->setCurrentWidget(loaded ? workLayout->parentWidget() : noPluginPage);
    noPluginPage->setText(session.pluginProblem());
    lowerPanes->setPlugin(session.root());
    if (loaded) {
        showElided(targetLabel,
                   tr("%1, version %2")
                       .arg(session.root()->getTargetName(), session.root()->getPluginVersion()));
    }
    showState();
}

void MainWindow::showState()
{
    showElided(statusLabel, statusText(session));
    startHint->setVisible(isStart(session));
    problemPane->setProblems(shownProblems(session));
    updateActions();
    showTitle();
}

void MainWindow::showTitle()
{
    const QString project = session.projectFile();
    const QString name = project.isEmpty() ? tr("Untitled") : QFileInfo(project).fileName();
    setWindowTitle(session.isLoaded() ? name + QLatin1String("[*]") : QString());
    // Without a project file, nothing is lost that was ever kept.
    setWindowModified(!project.isEmpty() && session.isModified());
}

/// The selection of a list without the focus is grey: most styles show the focus only faintly.
/// Light and dark text are readable on it, and the rows of most themes are much lighter or darker.
void MainWindow::showFocus()
{
    const QPalette normal = QApplication::palette();
    QPalette grey = normal;
    grey.setColor(QPalette::Highlight, QColor(120, 120, 120));
    for (QAbstractItemView *view : std::initializer_list<QAbstractItemView *>{
             ingredientPane->findChild<QTreeView *>(), problemPane}) {
        view->setPalette(view->hasFocus() ? normal : grey);
    }
}

/// The focus of an editor or a list that is closed would go to the next widget, into which the user
/// would type unknowingly.
void MainWindow::keepFocus(const QWidget *old, const QWidget *now)
{
    if (old && now && !old->isVisible() && isAncestorOf(old) && isAncestorOf(now)) {
        ingredientPane->setFocus();
    }
}

void MainWindow::open(const QStringList &paths)
{
    ingredientPane->commitEditor();
    projectFiles->open(paths);
}

void MainWindow::restoreLastProject()
{
    projectFiles->restoreLast();
}

void MainWindow::build()
{
    if (!session.isLoaded() || session.isBuilding()) {
        return;
    }
    ingredientPane->commitEditor();
    session.check();
    if (!askToBuild(this, session.problems())) {
        return;
    }
    session.build(readSettings().timeLimitSeconds * 1000);
}

void MainWindow::changeSettings()
{
    const Settings before = readSettings();
    SettingsDialog dialog(before, this);
    if (session.isLoaded() && !locateStitcher(before.stitcherFile).problem.isEmpty()) {
        dialog.focusStitcher();
    }
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    Settings edited = dialog.settings();
    session.setStitcher(edited.stitcherFile);
    const bool isPluginKept = session.isLoaded() && edited.pluginFile == before.pluginFile;
    if (!isPluginKept
        && !(projectFiles->mayLeave() && loadPlugin(pluginCandidates(edited.pluginFile)))) {
        edited.pluginFile = before.pluginFile;
    }
    writeSettings(edited);
}

void MainWindow::copyCommand()
{
    QApplication::clipboard()->setText(terminalCommand(session));
    showNotice(tr("The command is on the clipboard."));
}

void MainWindow::showAbout()
{
    QMessageBox::about(
        this, tr("About %1").arg(QApplication::applicationDisplayName()),
        tr("%1 %2\n\nA reference host for target plug-ins of the Tamblin Workbench.")
            .arg(QApplication::applicationDisplayName(), QApplication::applicationVersion()));
}

void MainWindow::startLog(const QString &stitcher)
{
    lowerPanes->showLog();
    lowerPanes->logPane->startBuild();
    lowerPanes->logPane->addStatus(tr("Building with %1").arg(QDir::toNativeSeparators(stitcher)));
}

void MainWindow::finishLog(const BuildResult &result)
{
    lowerPanes->logPane->finishBuild();
    if (result.isSuccess || result.isStopped) {
        lowerPanes->logPane->addStatus(resultLine(result));
    } else {
        lowerPanes->logPane->addError(resultLine(result));
    }
}

/// Shows @p text literally until the user closes it; of very many lines, only the first.
void MainWindow::showNotice(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    if (lines.count() > maxNoticeLines) {
        lines = lines.mid(0, maxNoticeLines) << tr("… the log has more.");
    }
    delete notice;
    notice = new KMessageWidget(this);
    notice->setObjectName(QStringLiteral("notice"));
    notice->setWordWrap(true);
    // A long word, such as a path, must not widen the window.
    notice->setMinimumWidth(1);
    notice->setText(literalText(lines.join(QLatin1Char('\n'))));
    workLayout->insertWidget(workLayout->indexOf(ingredientPane), notice);
    notice->show();
}

/// The row that gets what is dropped; none if that is opened instead.
std::optional<IngredientPane::FileRow> MainWindow::rowFor(const QDropEvent &event) const
{
    const QStringList files = droppedFiles(event);
    const bool isValue = files.count() == 1 && inputKindOf(files.first()) == InputKind::File;
    return isValue ? ingredientPane->fileRowAt(event.pos()) : std::nullopt;
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (session.isLoaded() && !session.isBuilding() && !droppedFiles(*event).isEmpty()) {
        dragMoveEvent(event);
    }
}

void MainWindow::dragMoveEvent(QDragMoveEvent *event)
{
    event->acceptProposedAction();
    const auto row = rowFor(*event);
    dropFrame->setGeometry(row ? row->area : centralWidget()->geometry());
    dropFrame->show();
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent *event)
{
    Q_UNUSED(event)
    dropFrame->hide();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    dropFrame->hide();
    event->acceptProposedAction();
    const auto row = rowFor(*event);
    const QStringList files = droppedFiles(*event);
    if (row) {
        ingredientPane->commitEditor();
        session.setValue(row->id, files.first());
    } else {
        open(files);
    }
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    problemPane->updateGeometry(); // It has a part of the height.
    startHint->setTextVisible(height() >= minLinesForHint * fontMetrics().height());
}

void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    // Not every change on disk is noticed as it happens, for example on a network file system.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        session.checkSoon();
    }
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    ingredientPane->commitEditor();
    if (session.isBuilding()
        && !confirm(this, tr("Close"), tr("The image is still being built."), tr("&Stop and close"),
                    tr("&Keep building"))) {
        event->ignore();
        return;
    }
    if (!projectFiles->mayLeave()) {
        event->ignore();
        return;
    }
    saveForNextSession();
    event->accept();
}

void MainWindow::saveForNextSession() const
{
    saveLayout(this, splitter, lowerPanes);
}
