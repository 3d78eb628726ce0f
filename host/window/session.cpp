// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/session.h"

#include "host/core/configuration.h"
#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/stagedfile.h"
#include "host/core/stitcher.h"
#include "host/core/values.h"
#include "host/window/inputkind.h"
#include "plugin/iloomwrightplugin.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUndoCommand>
#include <QUndoStack>

#include <algorithm>

namespace {

const char manifestSuffix[] = ".manifest.json";
const int maxUndoSteps = 200;

/// Every file that decides which stitcher is found, whether it exists or not.
QStringList stitcherPaths(const QString &chosenFile)
{
    if (!chosenFile.isEmpty()) {
        return {absolutePath(chosenFile)};
    }
    QStringList paths;
    const QStringList directories
        = qEnvironmentVariable("PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &directory : directories) {
        paths.append(absolutePath(directory) + QLatin1String("/tamblin-stitcher"));
    }
    return paths;
}

QString valueOf(const IngredientId &id, const Project &project)
{
    for (const ProjectEntry &entry : project.entries) {
        if (entry.ingredient == id) {
            return entry.value;
        }
    }
    return {};
}

} // namespace

/// A step of the history. It copies all values before and after it: they are small, and this fits
/// every kind of step.
class Session::ValuesCommand : public QUndoCommand
{
public:
    ValuesCommand(Session *imageSession, const QString &text, const Snapshot &snapshotBefore,
                  const Snapshot &snapshotAfter)
        : QUndoCommand(text)
        , session(imageSession)
        , before(snapshotBefore)
        , after(snapshotAfter)
    {
    }

    void undo() override
    {
        session->restore(before);
    }

    void redo() override
    {
        // The stack also calls this for a new step, which has already been done.
        if (std::exchange(isNew, false)) {
            return;
        }
        session->restore(after);
    }

private:
    Session *session;
    Snapshot before;
    Snapshot after;
    bool isNew = true;
};

Session::Session(QObject *parent)
    : QObject(parent)
    , undoStack(new QUndoStack(this))
{
    undoStack->setUndoLimit(maxUndoSteps);
    checkTimer.setSingleShot(true);
    checkTimer.setInterval(0);
    connect(&checkTimer, &QTimer::timeout, this, &Session::check);
    connect(&watcher, &FileWatcher::changed, this, &Session::checkSoon);
}

Session::~Session()
{
    runningBuild.reset();
    values.reset();
}

bool Session::loadPlugin(const QStringList &candidates)
{
    if (isBuilding()) {
        return false;
    }
    const auto file = std::find_if(candidates.begin(), candidates.end(),
                                   [](const QString &each) { return QFileInfo::exists(each); });
    if (isLoaded() && file != candidates.end()
        && QFileInfo(*file).canonicalFilePath() == QFileInfo(pluginFile()).canonicalFilePath()) {
        return true; // A library has one root object, which is in use.
    }
    auto loaded = std::make_unique<Plugin>();
    connect(loaded.get(), &Plugin::statusMessage, this, &Session::statusMessage);
    connect(loaded.get(), &Plugin::errorMessage, this, &Session::errorMessage);
    connect(loaded.get(), &Plugin::dataFileChanged, this, &Session::dataFileChanged);
    if (!loaded->load(candidates)) {
        problemText = loaded->problem();
        return false;
    }
    dropPlugin(QString());
    plugin = std::move(loaded);
    values = std::make_unique<Values>(plugin.get());
    connect(plugin.get(), &Plugin::aboutToRenew, this, &Session::pluginAboutToChange);
    connect(plugin.get(), &Plugin::renewed, this, &Session::pluginChanged);
    connect(values.get(), &Values::changed, this, &Session::checkSoon);
    // The plug-in proposes an image in the documents folder, which a new account may not have yet.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    savedValues = project();
    undoStack->clear();
    emit pluginChanged();
    emit projectChanged();
    check();
    return true;
}

void Session::dropPlugin(const QString &problem)
{
    problemText = problem;
    emit pluginAboutToChange();
    values.reset();
    plugin.reset();
    candidateFiles.clear();
    directories.clear();
    setProjectFile(QString());
    currentProblems.clear();
    lastState = BuildState::NotBuilt;
    watcher.setFiles({});
}

QString Session::pluginProblem() const
{
    return problemText;
}

bool Session::isLoaded() const
{
    return plugin != nullptr;
}

ILoomwrightPlugin *Session::root() const
{
    return plugin ? plugin->root() : nullptr;
}

QString Session::pluginFile() const
{
    return plugin ? plugin->fileName() : QString();
}

void Session::setStitcher(const QString &file)
{
    stitcher = file;
    checkSoon();
}

/// Runs an operation that may take some time and renew the plug-in.
void Session::run(const std::function<void()> &operation)
{
    emit busyChanged(true);
    operation();
    emit busyChanged(false);
    if (!plugin->isLoaded()) {
        dropPlugin(plugin->problem());
        emit pluginChanged();
    }
}

/// Runs an operation by which the user changes values.
void Session::change(const QString &text, const std::function<void()> &operation)
{
    if (!isLoaded() || isBuilding()) {
        return;
    }
    const Snapshot before = snapshot();
    run(operation);
    if (!isLoaded()) {
        return;
    }
    collectCandidates();
    reportRejections();
    checkSoon();
    const Snapshot after = snapshot();
    if (!after.values.hasSameValuesAs(before.values)) {
        undoStack->push(new ValuesCommand(this, text, before, after));
    }
}

void Session::open(const QStringList &paths)
{
    QStringList inputs;
    for (const QString &path : paths) {
        if (inputKindOf(path) == InputKind::Project) {
            openProject(path);
        } else {
            inputs.append(absolutePath(path));
        }
    }
    if (inputs.isEmpty()) {
        return;
    }
    const QString first = QFileInfo(inputs.first()).fileName();
    change(inputs.count() == 1 ? tr("Open %1").arg(first) : tr("Open %1 and others").arg(first),
           [&] { openInputs(inputs); });
}

void Session::openInputs(const QStringList &inputs)
{
    QStringList opened;
    std::copy_if(inputs.begin(), inputs.end(), std::back_inserter(opened),
                 [](const QString &input) { return inputKindOf(input) == InputKind::Directory; });
    const Snapshot before = snapshot();
    if (!opened.isEmpty()) {
        directories = opened;
        clearInputFiles();
    }
    bool taken = false;
    for (const QString &input : inputs) {
        taken = plugin->isLoaded() && (takeIn(input) || taken);
    }
    if (!taken && plugin->isLoaded()) {
        apply(before); // A folder that is rejected leaves everything as it was.
    }
}

void Session::clearInputFiles()
{
    candidateFiles.clear();
    const Ingredients all = ingredients();
    for (const Ingredient &ingredient : all) {
        if (ingredient.isInputFile() && !ingredient.text().isEmpty()) {
            values->setValue(ingredient.id, QString());
        }
    }
}

bool Session::takeIn(const QString &path)
{
    switch (inputKindOf(path)) {
    case InputKind::Directory:
        return values->fillFromDirectory(path);
    case InputKind::Configuration:
        return values->loadConfiguration(path);
    case InputKind::Project:
    case InputKind::File:
        break;
    }
    return values->addFile(path);
}

void Session::rescan()
{
    change(tr("Rescan"), [this] {
        const Snapshot before = snapshot();
        for (const QString &directory : qAsConst(directories)) {
            values->fillFromDirectory(directory);
        }
        keepChosenCandidates(before);
    });
}

bool Session::hasDirectories() const
{
    return !directories.isEmpty();
}

void Session::keepChosenCandidates(const Snapshot &before)
{
    for (const ProjectEntry &entry : before.values.entries) {
        const bool chosen = std::none_of(
            before.ambiguities.begin(), before.ambiguities.end(),
            [&entry](const Problem &problem) { return problem.ingredient == entry.ingredient; });
        if (chosen && candidates(entry.ingredient).contains(entry.value)) {
            values->setValue(entry.ingredient, entry.value);
        }
    }
}

void Session::collectCandidates()
{
    for (const Problem &problem : values->ambiguities()) {
        candidateFiles.insert(problem.ingredient, problem.files);
    }
}

void Session::setValue(const IngredientId &id, const QString &text)
{
    change((text.isEmpty() ? tr("Clear %1") : tr("Set %1")).arg(id.name),
           [&] { values->setValue(id, text); });
}

QUndoStack *Session::history() const
{
    return undoStack;
}

Session::Snapshot Session::snapshot() const
{
    return {project(), values ? values->ambiguities() : Problems(), candidateFiles, directories};
}

void Session::restore(const Snapshot &earlier)
{
    if (isLoaded() && !isBuilding()) {
        run([&] { apply(earlier); });
    }
}

void Session::apply(const Snapshot &earlier)
{
    values->loadProject(earlier.values, projectPath);
    values->setAmbiguities(earlier.ambiguities);
    candidateFiles = earlier.candidates;
    directories = earlier.directories;
}

bool Session::openProject(const QString &file)
{
    if (!isLoaded() || isBuilding()) {
        return false;
    }
    const QString path = resolvedTarget(file);
    Project opened;
    const QString problem = readProject(path, &opened);
    if (!problem.isEmpty()) {
        emit noticed(problem);
        return false;
    }
    bool taken = false;
    run([&] { taken = values->loadProject(opened, path); });
    if (!isLoaded()) {
        return false;
    }
    reportRejections();
    checkSoon();
    if (taken) {
        candidateFiles.clear();
        directories.clear();
        lastState = BuildState::NotBuilt;
        // Saving a project over a manifest would lose the record of the build.
        setProjectFile(opened.build ? QString() : path);
        savedValues = project();
        undoStack->clear();
        emit projectChanged();
    }
    return taken;
}

void Session::setProjectFile(const QString &file)
{
    projectPath = file;
    projectState = FileState::of(file);
    if (values) {
        values->setProjectFile(file);
    }
}

bool Session::saveProject(const QString &file)
{
    if (!isLoaded()) {
        return false;
    }
    const QString path = resolvedTarget(file);
    QString problem = values->saveProblem(path);
    if (problem.isEmpty()) {
        problem = writeProject(path, project());
    }
    if (!problem.isEmpty()) {
        emit noticed(problem);
        return false;
    }
    setProjectFile(path);
    savedValues = project();
    checkSoon();
    emit projectChanged();
    return true;
}

bool Session::saveConfiguration(const QString &file)
{
    if (!isLoaded()) {
        return false;
    }
    const QString path = resolvedTarget(file);
    const auto configuration = configurationOf(*plugin);
    QString problem = values->overwriteProblem(path);
    if (problem.isEmpty()) {
        problem = configuration ? writeWhole(path, *configuration)
                                : tr("The configuration could not be written; the log says why.");
    }
    if (!problem.isEmpty()) {
        emit noticed(problem);
        return false;
    }
    const QStringList losses = lossesIn(*configuration, ingredients());
    if (!losses.isEmpty()) {
        emit noticed(tr("The configuration was saved. %1 A project file holds all values.")
                         .arg(losses.join(QLatin1Char(' '))));
    }
    return true;
}

void Session::writeManifest()
{
    const QString file = resolvedTarget(lastResult.image.file + QLatin1String(manifestSuffix));
    QString problem = values->overwriteProblem(file);
    if (problem.isEmpty()) {
        problem = ::writeManifest(lastResult, file);
    }
    emit noticed(problem.isEmpty() ? tr("The manifest was written to %1.").arg(file) : problem);
}

QString Session::projectFile() const
{
    return projectPath;
}

bool Session::isProjectFileChanged() const
{
    return !projectPath.isEmpty() && FileState::of(projectPath) != projectState;
}

bool Session::isModified() const
{
    return isLoaded() && !project().hasSameValuesAs(savedValues);
}

Project Session::project() const
{
    return values ? values->project() : Project();
}

Ingredients Session::ingredients() const
{
    return values ? values->ingredients() : Ingredients();
}

Problems Session::problems() const
{
    return currentProblems;
}

QStringList Session::candidates(const IngredientId &id) const
{
    QStringList files = candidateFiles.value(id);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const QString &file) { return !QFileInfo::exists(file); }),
                files.end());
    const auto ingredient = findIngredient(ingredients(), id);
    const bool isOnlyValue = files.count() == 1 && ingredient && files.contains(ingredient->text());
    return isOnlyValue ? QStringList() : files;
}

void Session::check()
{
    checkTimer.stop();
    reloadDataFiles();
    if (!isLoaded()) {
        return;
    }
    {
        const QSignalBlocker blocker(values.get()); // This is the check.
        values->check();
    }
    currentProblems = findings() + values->problems();
    watchFiles();
    emit changed();
}

IngredientId Session::stitcherId()
{
    return {tr("Stitcher"), {}};
}

/// Problems of no ingredient that stay until their cause is gone.
Problems Session::findings() const
{
    Problems found;
    const QString stitcherProblem = locateStitcher(stitcher).problem;
    if (!stitcherProblem.isEmpty()) {
        found.append({ProblemKind::Finding, Severity::Fatal, stitcherProblem, stitcherId()});
    }
    if (isProjectFileChanged()) {
        const QString text = QFileInfo::exists(projectPath)
            ? tr("Another program has changed the project file")
            : tr("The project file does not exist any more");
        const IngredientId project{tr("Project"), {}};
        found.append({ProblemKind::Finding, Severity::Warning, text, project, {projectPath}});
    }
    return found;
}

void Session::watchFiles()
{
    QStringList files = inputFilesOf(ingredients());
    for (const QStringList &candidates : qAsConst(candidateFiles)) {
        files += candidates;
    }
    files << values->image() << projectPath << stitcherPaths(stitcher);
    files.removeAll(QString());
    watcher.setFiles(files);
}

void Session::checkSoon()
{
    checkTimer.start();
}

/// Shows problems that belong to no ingredient once, so that no build asks about them again.
void Session::reportRejections()
{
    QStringList texts;
    for (const Problem &problem : values->problems()) {
        if (!problem.ingredient.isEmpty()) {
            continue;
        }
        texts.append(problem.severity == Severity::Warning
                         ? tr("%1: %2").arg(problem.text, problem.files.join(tr(", ")))
                         : problem.text);
    }
    if (!texts.isEmpty()) {
        values->forgetInputProblems();
        emit noticed(texts.join(QLatin1Char('\n')));
    }
}

void Session::reloadDataFiles()
{
    if (isLoaded() && !isEditing && !isBuilding() && values->hasOutdatedDataFiles()) {
        run([this] { values->reloadDataFiles(); });
    }
}

void Session::setEditing(bool newEditing)
{
    isEditing = newEditing;
    reloadDataFiles();
}

void Session::build(int timeoutMs)
{
    if (!isLoaded() || isBuilding()) {
        return;
    }
    BuildOptions options;
    options.stitcher = locateStitcher(stitcher).file;
    options.timeoutMs = timeoutMs;
    options.known = values->inputRecords();
    runningBuild = std::make_unique<Build>(plugin.get(), values.get(), options);
    connect(runningBuild.get(), &Build::hashing, this, &Session::hashing);
    connect(runningBuild.get(), &Build::finished, this, &Session::finishBuild);
    builtValues = project();
    lastState = BuildState::Running;
    emit buildStarted(options.stitcher);
    runningBuild->start();
    emit changed();
}

void Session::stopBuild()
{
    if (lastState == BuildState::Running) {
        lastState = BuildState::Stopping;
        runningBuild->stop(tr("The build was stopped."));
        emit changed();
    }
}

void Session::finishBuild(const BuildResult &result)
{
    runningBuild.release()->deleteLater();
    lastResult = result;
    lastState = result.isSuccess ? BuildState::Current
        : result.isStopped       ? BuildState::Stopped
                                 : BuildState::Failed;
    emit buildFinished(result);
    checkSoon();
}

bool Session::isBuilding() const
{
    return runningBuild != nullptr;
}

BuildState Session::buildState() const
{
    switch (lastState) {
    case BuildState::Current:
        return changesSinceBuild().isEmpty() ? BuildState::Current : BuildState::Outdated;
    case BuildState::Failed:
    case BuildState::Stopped:
        return changesSinceBuild().isEmpty() ? lastState : BuildState::NotBuilt;
    default:
        return lastState;
    }
}

const BuildResult &Session::buildResult() const
{
    return lastResult;
}

QStringList Session::changesSinceBuild() const
{
    QStringList changes;
    const Project current = project();
    for (const ProjectEntry &entry : current.entries) {
        if (entry.value != valueOf(entry.ingredient, builtValues)) {
            changes.append(entry.ingredient.name);
        }
    }
    for (const FileRecord &input : lastResult.inputs) {
        if (!isUnchanged(input)) {
            changes.append(input.file);
        }
    }
    const FileRecord &used = lastResult.stitcher;
    if (!used.file.isEmpty()
        && (used.file != locateStitcher(stitcher).file || !isUnchanged(used))) {
        changes.append(used.file);
    }
    if (lastResult.isSuccess && !isUnchanged(lastResult.image)) {
        changes.append(lastResult.image.file);
    }
    return changes;
}

bool Session::isNewerThanImage(const Ingredient &ingredient) const
{
    const FileState input = FileState::of(ingredient.text());
    const FileState image = FileState::of(values->image());
    return ingredient.isInputFile() && input.isRegular() && image.isRegular()
        && input.modified > image.modified;
}
