// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/imagesession.h"

#include "host/core/files.h"
#include "host/core/findings.h"
#include "host/core/imagejob.h"
#include "host/core/inputkind.h"
#include "host/core/pluginsession.h"
#include "model/filepath.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

namespace {

const int maxProblemsPerIngredient = 50;

/// What the plug-in reports when a signal ended the stitcher.
const char crashMessage[] = "The process crashed some time after starting successfully.";

QString idOf(const QString &name, const QString &key)
{
    return name + QLatin1Char('\n') + key;
}

/// The problems to show: for a missing file only that it is missing, not its size too.
QVector<Problem> condensed(const QVector<Problem> &problems)
{
    QSet<QString> failedChecks;
    QVector<Problem> shown;
    for (const Problem &problem : problems) {
        if (problem.kind == ProblemKind::Check && problem.actual.isEmpty()) {
            const QString id = idOf(problem.ingredient, problem.key);
            if (failedChecks.contains(id)) {
                continue;
            }
            failedChecks.insert(id);
        }
        shown.append(problem);
    }
    return shown;
}

} // namespace

ImageSession::ImageSession(QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<Project>();
    checkTimer.setSingleShot(true);
    checkTimer.setInterval(0);
    connect(&checkTimer, &QTimer::timeout, this, &ImageSession::check);
    connect(&watcher, &FileWatcher::changed, this, &ImageSession::noteFileChanges);
}

ImageSession::~ImageSession()
{
    runner.reset();
    job.reset();
}

bool ImageSession::loadPlugin(const QStringList &candidates)
{
    const auto file = std::find_if(candidates.begin(), candidates.end(),
                                   [](const QString &each) { return QFileInfo::exists(each); });
    if (isBuilding()) {
        return false;
    }
    if (isLoaded() && file != candidates.end()
        && QFileInfo(*file).canonicalFilePath() == QFileInfo(pluginFile()).canonicalFilePath()) {
        return true; // A library has one root object, which is in use.
    }
    auto loaded = std::make_unique<PluginSession>();
    const StatusManager *relay = loaded->statusManager();
    connect(relay, &StatusManager::statusMessage, this, &ImageSession::statusMessage);
    connect(relay, &StatusManager::errorMessage, this, &ImageSession::relayError);
    connect(relay, &StatusManager::dataFileChanged, this, &ImageSession::dataFileChanged);
    if (!loaded->load(candidates)) {
        problemText = loaded->problem();
        return false;
    }
    dropPlugin(QString());
    session = std::move(loaded);
    job = std::make_unique<ImageJob>(session.get());
    job->setMaxProblems(maxProblemsPerIngredient);
    connect(job.get(), &ImageJob::problemsChanged, this, [this] {
        if (!isChecking) {
            checkTimer.start();
        }
    });
    // The plug-in proposes an image in the documents folder, which a new account may not have yet.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    savedValues = values();
    emit pluginChanged();
    emit projectOpened();
    emit projectChanged();
    check();
    return true;
}

void ImageSession::dropPlugin(const QString &problem)
{
    problemText = problem;
    emit pluginAboutToChange();
    job.reset();
    session.reset();
    candidateFiles.clear();
    directories.clear();
    projectPath.clear();
    currentProblems.clear();
    latestBuild.reset();
    watcher.setFiles({});
}

QString ImageSession::pluginProblem() const
{
    return problemText;
}

bool ImageSession::isLoaded() const
{
    return session != nullptr;
}

ILoomwrightPlugin *ImageSession::plugin() const
{
    return session ? session->plugin() : nullptr;
}

QString ImageSession::pluginFile() const
{
    return session ? session->fileName() : QString();
}

/// Runs an operation by which the user changes values.
void ImageSession::change(const QString &text, const std::function<void()> &operation)
{
    if (!isLoaded() || isBuilding()) {
        return;
    }
    const Project before = values();
    emit busyChanged(true);
    operation();
    emit busyChanged(false);
    if (!isLoaded()) {
        return;
    }
    collectCandidates();
    reportRefusals();
    checkTimer.start();
    const Project after = values();
    if (!after.hasSameValuesAs(before)) {
        emit valuesChanged(text, before, after);
    }
}

/// Runs an operation that may make the plug-in load a data file.
/// @param dataFile whether to load the present data file again when the operation sets none
void ImageSession::inFreshPlugin(DataFile dataFile, const std::function<bool()> &operation)
{
    const QVector<Ingredient> before = ingredients();
    const bool renewed = renewPlugin();
    if (!isLoaded()) {
        return;
    }
    const bool taken = operation();
    if (!renewed || (taken && dataFile == DataFile::Leave)) {
        return;
    }
    for (const Ingredient &old : before) {
        const Ingredient now = findIngredient(ingredients(), old.name, old.key);
        if (isDataFile(old) && !textOf(old.value).isEmpty() && textOf(now.value).isEmpty()) {
            job->setValue(now, textOf(old.value));
        }
    }
}

/// Replaces the root object by a new one; see ImageJob::renewPlugin(). Does nothing if no data file
/// has been loaded.
bool ImageSession::renewPlugin()
{
    if (!session->ingredientManager()->dataLoaded()) {
        return false;
    }
    emit pluginAboutToChange();
    if (!job->renewPlugin()) {
        dropPlugin(session->problem());
    }
    emit pluginChanged();
    return true;
}

void ImageSession::open(const QStringList &paths)
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
    QStringList opened;
    std::copy_if(inputs.begin(), inputs.end(), std::back_inserter(opened),
                 [](const QString &path) { return QFileInfo(path).isDir(); });
    const QString first = QFileInfo(inputs.first()).fileName();
    change(inputs.count() == 1 ? tr("Open %1").arg(first) : tr("Open %1 and others").arg(first),
           [&] {
               if (!opened.isEmpty()) {
                   directories = opened;
                   candidateFiles.clear();
               }
               inFreshPlugin(DataFile::TakeOver, [&] {
                   for (const QString &input : qAsConst(inputs)) {
                       takeIn(input);
                   }
                   return true;
               });
           });
}

void ImageSession::takeIn(const QString &path)
{
    switch (inputKindOf(path)) {
    case InputKind::Directory:
        job->fillFromDirectory(path);
        break;
    case InputKind::Configuration:
        job->loadConfig(path);
        break;
    case InputKind::Project:
    case InputKind::File:
        job->addFile(path);
        break;
    }
}

void ImageSession::rescan()
{
    change(tr("Rescan"), [this] {
        const Project before = values();
        inFreshPlugin(DataFile::TakeOver, [this] {
            for (const QString &directory : qAsConst(directories)) {
                job->fillFromDirectory(directory);
            }
            return true;
        });
        if (isLoaded()) {
            keepChosenCandidates(before);
        }
    });
}

void ImageSession::keepChosenCandidates(const Project &before)
{
    for (const ProjectEntry &entry : before.entries) {
        if (candidates(entry.name, entry.key).contains(entry.value)) {
            job->setValue(findIngredient(ingredients(), entry.name, entry.key), entry.value);
        }
    }
}

/// A candidate that was not chosen is reported as a problem whose file is not the ingredient's
/// value.
void ImageSession::collectCandidates()
{
    const QVector<Ingredient> all = ingredients();
    QHash<QString, QStringList> found;
    for (const Problem &problem : job->problems()) {
        const QString value = textOf(findIngredient(all, problem.ingredient, problem.key).value);
        if (problem.kind == ProblemKind::Message && !problem.ingredient.isEmpty()
            && !problem.file.isEmpty() && problem.file != value) {
            QStringList &files = found[idOf(problem.ingredient, problem.key)];
            if (files.isEmpty()) {
                files.append(value);
            }
            files.append(problem.file);
        }
    }
    for (auto files = found.constBegin(); files != found.constEnd(); ++files) {
        candidateFiles.insert(files.key(), *files);
    }
}

void ImageSession::setValue(const QString &name, const QString &key, const QString &text)
{
    const Ingredient ingredient = findIngredient(ingredients(), name, key);
    if (!ingredient.valueIndex.isValid()) {
        return;
    }
    change(text.isEmpty() ? tr("Clear %1").arg(name) : tr("Set %1").arg(name), [&] {
        const auto set
            = [&] { return job->setValue(findIngredient(ingredients(), name, key), text); };
        if (isDataFile(ingredient)) {
            inFreshPlugin(DataFile::Leave, set);
        } else {
            set();
        }
    });
}

void ImageSession::restore(const Project &values)
{
    if (!isLoaded() || isBuilding()) {
        return;
    }
    emit busyChanged(true);
    inFreshPlugin(DataFile::Leave, [&] { return job->loadProject(values, QString()); });
    emit busyChanged(false);
}

bool ImageSession::openProject(const QString &file)
{
    if (!isLoaded() || isBuilding()) {
        return false;
    }
    const QString path = absolutePath(file);
    Project project;
    const QString problem = readProject(path, &project);
    if (!problem.isEmpty()) {
        emit noticed(problem);
        return false;
    }
    bool taken = false;
    emit busyChanged(true);
    inFreshPlugin(DataFile::Leave, [&] { return taken = job->loadProject(project, path); });
    emit busyChanged(false);
    if (!isLoaded()) {
        return false;
    }
    reportRefusals();
    checkTimer.start();
    if (taken) {
        candidateFiles.clear();
        directories.clear();
        latestBuild.reset();
        // Saving a project over a manifest would lose the record of the build.
        projectPath = project.build ? QString() : path;
        savedValues = values();
        emit projectOpened();
        emit projectChanged();
    }
    return taken;
}

bool ImageSession::saveProject(const QString &file)
{
    if (!isLoaded()) {
        return false;
    }
    const QString path = absolutePath(file);
    QString problem = job->overwriteProblem(path);
    if (!problem.isEmpty() && path == projectPath) {
        problem.clear(); // A file that was opened as a project may be overwritten.
    }
    if (problem.isEmpty()) {
        problem = writeProject(path, values());
    }
    if (!problem.isEmpty()) {
        emit noticed(problem);
        return false;
    }
    projectPath = path;
    savedValues = values();
    emit projectChanged();
    return true;
}

bool ImageSession::saveConfiguration(const QString &file)
{
    if (!isLoaded()) {
        return false;
    }
    const QString path = absolutePath(file);
    const QString problem = job->overwriteProblem(path);
    if (!problem.isEmpty()) {
        emit noticed(problem);
        return false;
    }
    if (!session->ingredientManager()->saveConfigToFile(path)) {
        emit noticed(tr("The configuration %1 could not be written; the log says why.").arg(path));
        return false;
    }
    const QStringList remarks = configurationRemarks(ingredients(), path);
    if (!remarks.isEmpty()) {
        emit noticed(tr("The configuration was saved. %1 A project file holds all values.")
                         .arg(remarks.join(QLatin1Char(' '))));
    }
    return true;
}

QString ImageSession::projectFile() const
{
    return projectPath;
}

bool ImageSession::isModified() const
{
    return isLoaded() && !values().hasSameValuesAs(savedValues);
}

Project ImageSession::values() const
{
    return job ? job->project() : Project();
}

QVector<Ingredient> ImageSession::ingredients() const
{
    return job ? job->ingredients() : QVector<Ingredient>();
}

QVector<Problem> ImageSession::problems() const
{
    return currentProblems;
}

QStringList ImageSession::candidates(const QString &name, const QString &key) const
{
    return candidateFiles.value(idOf(name, key));
}

QString ImageSession::imageFile() const
{
    return textOf(outputIngredient(ingredients()).value);
}

void ImageSession::check()
{
    checkTimer.stop();
    if (!isLoaded()) {
        return;
    }
    isDataFileOutdated = isDataFileOutdated || !changedFile(job->loadedStates()).isEmpty();
    reloadDataFile();
    if (!isLoaded()) {
        return;
    }
    QStringList files = inputFilesOf(ingredients());
    checkedStates = statesOf(files);
    checkedStates.insert(job->loadedStates());
    {
        const QScopedValueRollback<bool> checking(isChecking, true);
        job->check();
        currentProblems = condensed(job->problems());
    }
    if (!imageFile().isEmpty()) {
        files.append(imageFile());
    }
    watcher.setFiles(files);
    emit changed();
}

/// Shows problems that belong to no ingredient once, so that no build asks about them again.
void ImageSession::reportRefusals()
{
    QStringList texts;
    for (const Problem &problem : job->problems()) {
        if (problem.ingredient.isEmpty()) {
            texts.append(problem.text);
        }
    }
    if (!texts.isEmpty()) {
        job->forgetInputProblems();
        emit noticed(texts.join(QLatin1Char('\n')));
    }
}

void ImageSession::noteFileChanges(const QStringList &files)
{
    for (const Ingredient &ingredient : ingredients()) {
        isDataFileOutdated = isDataFileOutdated
            || (isDataFile(ingredient) && files.contains(textOf(ingredient.value)));
    }
    reloadDataFile();
    checkTimer.start();
}

void ImageSession::reloadDataFile()
{
    if (!isDataFileOutdated || isEditing || isBuilding() || !isLoaded()) {
        return;
    }
    isDataFileOutdated = false;
    emit busyChanged(true);
    inFreshPlugin(DataFile::TakeOver, [] { return true; });
    emit busyChanged(false);
}

void ImageSession::setEditing(bool newEditing)
{
    isEditing = newEditing;
    reloadDataFile();
}

void ImageSession::build(const BuildOptions &options)
{
    if (!isLoaded() || isBuilding()) {
        return;
    }
    wasStopped = false;
    runner = std::make_unique<BuildRunner>(session.get());
    connect(runner.get(), &BuildRunner::hashing, this, &ImageSession::hashing);
    connect(runner.get(), &BuildRunner::finished, this, &ImageSession::finishBuild);
    latestBuild.start(values());
    BuildOptions checkedOptions = options;
    checkedOptions.knownStates = checkedStates;
    runner->start(checkedOptions);
    emit buildStarted();
    emit changed();
}

void ImageSession::stopBuild()
{
    if (runner) {
        wasStopped = true;
        runner->stop(tr("The build was stopped."));
    }
}

void ImageSession::finishBuild(const BuildResult &result)
{
    runner.release()->deleteLater();
    wasStopped = wasStopped && !result.isSuccess;
    latestBuild.finish(result);
    emit buildFinished(result);
    reloadDataFile();
    checkTimer.start();
}

void ImageSession::relayError(const QString &message)
{
    // The plug-in reports a stitcher that was stopped as crashed.
    if (!isBuilding() || !wasStopped || message != QLatin1String(crashMessage)) {
        emit errorMessage(message);
    }
}

bool ImageSession::isBuilding() const
{
    return runner != nullptr;
}

bool ImageSession::isStopped() const
{
    return wasStopped;
}

BuildState ImageSession::buildState() const
{
    return latestBuild.state(values());
}

const LastBuild &ImageSession::lastBuild() const
{
    return latestBuild;
}

bool ImageSession::isNewerThanImage(const Ingredient &ingredient) const
{
    return kindOf(ingredient.value) == ValueKind::File && ingredient.value.value<FilePath>().isInput
        && latestBuild.isNewerThanImage(textOf(ingredient.value), imageFile());
}
