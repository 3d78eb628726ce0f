// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/imagejob.h"

#include "host/core/files.h"
#include "host/core/findings.h"
#include "host/core/imageguard.h"
#include "host/core/pluginsession.h"
#include "model/filepath.h"
#include "model/modelcolumns.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QAbstractItemModel>
#include <QFileInfo>
#include <QLocale>
#include <QMap>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>

namespace {

bool isSame(const Ingredient &ingredient, const QString &name, const QString &key)
{
    return ingredient.name == name && ingredient.key == key;
}

/// The problem behind a message about two values for one key. The key is available nowhere else;
/// the rest of such a message is "KEY = VALUE".
Problem conflictOf(const QString &message)
{
    for (const char *prefix :
         {" - Duplicate Ingredient found! ", "Config file contains duplicate key value: "}) {
        if (message.startsWith(QLatin1String(prefix))) {
            const QString entry = message.mid(int(qstrlen(prefix)));
            Problem problem;
            problem.kind = ProblemKind::Message;
            problem.text = ImageJob::tr("Multiple candidates found");
            problem.key = entry.section(QLatin1Char('='), 0, 0).trimmed();
            problem.file = entry.section(QLatin1Char('='), 1).trimmed();
            return problem;
        }
    }
    return {};
}

/// Whether the message is about a line of a configuration, not about the value that is set next.
bool isAboutConfigLine(const QString &message)
{
    return message.startsWith(QLatin1String("Malformed config entry found: "));
}

/// Completes the problem of two values with the ingredient that @p owner is.
void setOwner(Problem *conflict, const Ingredient &owner)
{
    conflict->ingredient = owner.name;
    const QString used = textOf(owner.value);
    const QString usedName = QFileInfo(used).fileName();
    if (!used.isEmpty()) {
        const bool ambiguous = usedName == QFileInfo(conflict->file).fileName();
        conflict->text = ImageJob::tr("Multiple candidates found; %1 is used")
                             .arg(ambiguous ? used : usedName);
    }
}

QString fileRefusal(const QString &file)
{
    const QFileInfo info(file);
    if (!info.exists()) {
        return ImageJob::tr("The file %1 was refused: it does not exist.").arg(file);
    }
    return info.isFile()
        ? ImageJob::tr("The file %1 was refused: its name matches no ingredient.").arg(file)
        : ImageJob::tr("The file %1 was refused: it is not a regular file.").arg(file);
}

Problem problemOf(const FileCheck &check)
{
    Problem problem;
    problem.kind = ProblemKind::Check;
    problem.text = check.details;
    problem.ingredient = check.ingredient.name;
    problem.key = check.ingredient.key;
    problem.file = check.file;
    if (check.expectedSize >= 0) {
        problem.required = sizeText(check.expectedSize);
        problem.actual = check.actualSize >= 0 ? sizeText(check.actualSize) : QString();
        problem.requiredSize = check.expectedSize;
        problem.actualSize = check.actualSize;
    }
    return problem;
}

FileCheck checkOf(const Ingredient &ingredient)
{
    FileCheck check;
    check.ingredient = ingredient;
    const auto file = ingredient.value.value<FilePath>();
    check.file = file.fileName;
    if (file.exactSize > 0) {
        check.expectedSize = file.exactSize;
    }
    const FileState state = FileState::of(file.fileName);
    if (state.isRegular()) {
        check.actualSize = state.size;
    }
    return check;
}

} // namespace

ImageJob::ImageJob(PluginSession *pluginSession, QObject *parent)
    : QObject(parent)
    , session(pluginSession)
{
    connect(session->statusManager(), &StatusManager::errorMessage, this, &ImageJob::noteError);
    connect(session, &PluginSession::reloaded, this, &ImageJob::attach);
    attach();
}

void ImageJob::setMaxProblems(int max)
{
    maxProblems = max;
}

/// Connected after the plug-in's own slots, so that the errors that a new value causes in the
/// plug-in arrive before noteChange().
void ImageJob::attach()
{
    inputProblems.clear();
    failedChecks.clear();
    lastChecks.clear();
    connect(session->ingredientManager()->getIngredients(), &QAbstractItemModel::dataChanged, this,
            &ImageJob::noteChange);
}

QVector<Ingredient> ImageJob::ingredients() const
{
    return ingredientsOf(*session->ingredientManager()->getIngredients());
}

Ingredient ImageJob::ingredientAt(const QModelIndex &cell) const
{
    const QVector<Ingredient> all = ingredients();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Ingredient &each) {
        return each.valueIndex.siblingAtColumn(0) == cell.siblingAtColumn(0);
    });
    return found == all.end() ? Ingredient() : *found;
}

void ImageJob::noteError(const QString &message)
{
    const Problem conflict = conflictOf(message);
    if (isApplying && !conflict.key.isEmpty()) {
        pendingConflicts.append(conflict);
        return;
    }
    if (isApplying && isAboutConfigLine(message)) {
        addMessages({message}, {});
        return;
    }
    pendingErrors.append(message.trimmed());
    if (!isApplying) {
        // Only an edit in progress can have caused it; other errors concern no value.
        QTimer::singleShot(0, this, [this] { pendingErrors.clear(); });
    }
}

void ImageJob::noteChange(const QModelIndex &cell)
{
    const Ingredient changed = ingredientAt(cell);
    if (!changed.valueIndex.isValid()) {
        return;
    }
    settle(changed);
    if (isDataFile(changed)) {
        const QString file = absolutePath(textOf(changed.value));
        dataFileStates.insert(file, FileState::of(file));
    }
    // Only for such a value does the plug-in do work whose errors are about that value.
    if (changed.value.canConvert<FilePath>() && changed.value.value<FilePath>().broadcastChanges) {
        addMessages(pendingErrors, changed);
        pendingErrors.clear();
    }
    emit problemsChanged();
}

/// Forgets the problems of the value that @p ingredient had.
void ImageJob::settle(const Ingredient &ingredient)
{
    for (QVector<Problem> *list : {&inputProblems, &failedChecks}) {
        list->erase(std::remove_if(list->begin(), list->end(),
                                   [&](const Problem &problem) {
                                       return isSame(ingredient, problem.ingredient, problem.key);
                                   }),
                    list->end());
    }
}

void ImageJob::addMessages(const QStringList &messages, const Ingredient &ingredient)
{
    QVector<Problem> problems;
    for (const QString &message : messages) {
        Problem problem;
        problem.kind = ProblemKind::Message;
        problem.text = message;
        problem.ingredient = ingredient.name;
        problem.key = ingredient.key;
        problem.file = textOf(ingredient.value);
        problems.append(problem);
    }
    addProblems(problems);
}

/// Adds the problems that one input has caused.
void ImageJob::addProblems(const QVector<Problem> &problems)
{
    QMap<QPair<QString, QString>, int> counts;
    for (const Problem &problem : problems) {
        const bool concernsNone = problem.ingredient.isEmpty();
        if (concernsNone || ++counts[{problem.ingredient, problem.key}] <= maxProblems) {
            inputProblems.append(problem);
        }
    }
    for (auto count = counts.constBegin(); count != counts.constEnd(); ++count) {
        if (*count > maxProblems) {
            Problem rest;
            rest.kind = ProblemKind::Message;
            rest.text
                = tr("… and %1 more; see the log").arg(QLocale().toString(*count - maxProblems));
            rest.ingredient = count.key().first;
            rest.key = count.key().second;
            inputProblems.append(rest);
        }
    }
}

bool ImageJob::refuse(const QString &text, const Ingredient &ingredient)
{
    Problem problem;
    problem.kind = ProblemKind::Input;
    problem.text = text;
    problem.ingredient = ingredient.name;
    problem.key = ingredient.key;
    problem.mustBeFixed = true;
    addProblem(problem);
    return false;
}

/// Applies an input and records the errors that it causes.
/// @param refusal what to report when the plug-in refuses it
bool ImageJob::apply(const QString &refusal, const std::function<bool()> &operation)
{
    pendingErrors.clear();
    bool isTaken = false;
    {
        const QScopedValueRollback<bool> applying(isApplying, true);
        isTaken = operation();
    }
    const QVector<Ingredient> all = ingredients();
    for (Problem &conflict : pendingConflicts) {
        const auto owner = std::find_if(all.begin(), all.end(), [&](const Ingredient &each) {
            return each.key == conflict.key;
        });
        setOwner(&conflict, owner == all.end() ? Ingredient() : *owner);
    }
    inputProblems += pendingConflicts; // All of them, as they are the candidates to choose from.
    pendingConflicts.clear();
    addMessages(pendingErrors, {});
    pendingErrors.clear();
    if (!isTaken && !refusal.isEmpty()) {
        refuse(refusal);
    }
    emit problemsChanged();
    return isTaken;
}

bool ImageJob::loadConfig(const QString &file)
{
    const QString path = absolutePath(file);
    inputFiles.append(path);
    return apply(tr("The configuration %1 was refused.").arg(file),
                 [&] { return session->ingredientManager()->loadConfigFromFile(path); });
}

bool ImageJob::fillFromDirectory(const QString &directory)
{
    const QString path = absolutePath(directory);
    if (apply({},
              [&] { return session->ingredientManager()->generateConfigFromDirectory(path); })) {
        return true;
    }
    const QString remark = directoryRemark(path);
    return refuse(remark.isEmpty()
                      ? tr("The directory %1 was refused.").arg(directory)
                      : tr("The directory %1 was refused: %2.").arg(directory, remark));
}

bool ImageJob::addFile(const QString &file)
{
    return apply(fileRefusal(file), [&] {
        return session->ingredientManager()->loadIngredientFile(absolutePath(file));
    });
}

bool ImageJob::setValue(const QString &nameOrKey, const QString &text)
{
    const Ingredient ingredient
        = findIngredient(*session->ingredientManager()->getIngredients(), nameOrKey);
    return ingredient.valueIndex.isValid()
        ? setValue(ingredient, text)
        : refuse(tr("No ingredient has the name or key \"%1\".").arg(nameOrKey));
}

bool ImageJob::setValue(const Ingredient &ingredient, const QString &text)
{
    QAbstractItemModel *model = session->ingredientManager()->getIngredients();
    QString problem;
    apply({}, [&] {
        // Setting the same value again settles its problems too.
        settle(ingredient);
        problem = setIngredientValue(model, ingredient, text);
        return problem.isEmpty();
    });
    return problem.isEmpty() || refuse(problem, ingredient);
}

bool ImageJob::setImage(const QString &file)
{
    const Ingredient output = outputIngredient(*session->ingredientManager()->getIngredients());
    return output.valueIndex.isValid() ? setValue(output.name, file)
                                       : refuse(tr("This target writes no image."));
}

bool ImageJob::renewPlugin()
{
    const QVector<Ingredient> old = ingredients();
    const QVector<Problem> oldProblems = inputProblems;
    Project kept = project();
    for (ProjectEntry &entry : kept.entries) {
        if (isDataFile(ingredientFor(entry, old))) {
            entry.value.clear();
        }
    }
    if (!session->reload()) {
        return false;
    }
    loadProject(kept, QString());
    for (const Problem &problem : oldProblems) {
        if (!isDataFile(findIngredient(old, problem.ingredient, problem.key))) {
            addProblem(problem);
        }
    }
    return true;
}

void ImageJob::addProblem(const Problem &problem)
{
    inputProblems.append(problem);
    emit problemsChanged();
}

void ImageJob::forgetInputProblems()
{
    inputProblems.erase(
        std::remove_if(inputProblems.begin(), inputProblems.end(),
                       [](const Problem &problem) { return problem.ingredient.isEmpty(); }),
        inputProblems.end());
    emit problemsChanged();
}

bool ImageJob::check()
{
    const bool isPassed = session->executionManager()->verifyInputs();

    lastChecks.clear();
    failedChecks.clear();
    const QVector<Ingredient> all = ingredients();
    const QAbstractItemModel &table = *session->executionManager()->getIngredientChecks();
    // The table only has names, in tree order, and a name may occur twice.
    int position = 0;
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString name = table.index(row, CheckColumn::Ingredient).data().toString();
        int candidate = position;
        while (candidate < all.count() && all.at(candidate).name != name) {
            ++candidate;
        }
        const bool found = candidate < all.count();
        position = found ? candidate : position;
        FileCheck check = checkOf(found ? all.at(candidate) : Ingredient());
        check.ingredient.name = name;
        check.passed = table.index(row, CheckColumn::Passed).data().toBool();
        check.details = table.index(row, CheckColumn::Details).data().toString();
        lastChecks.append(check);
        if (!check.passed) {
            failedChecks.append(problemOf(check));
        }
    }
    emit problemsChanged();
    return isPassed;
}

QVector<FileCheck> ImageJob::checks() const
{
    return lastChecks;
}

QVector<Problem> ImageJob::problems() const
{
    const QVector<Ingredient> all = ingredients();
    QVector<Problem> result = inputProblems + failedChecks + findingsFor(all);
    const Ingredient output = outputIngredient(all);
    const QString image = textOf(output.value);
    const QStringList used = usedFiles();
    const bool replaced = std::any_of(used.begin(), used.end(), [&image](const QString &each) {
        return ImageGuard::isReserved(image, each);
    });
    if (replaced || isInputFile(image)) {
        Problem problem;
        problem.kind = ProblemKind::Finding;
        problem.text
            = tr("The build would replace one of the inputs: a configuration or project that was "
                 "loaded, or the plug-in");
        problem.ingredient = output.name;
        problem.key = output.key;
        problem.file = image;
        problem.mustBeFixed = true;
        result.append(problem);
    }
    return result;
}

/// Files that are no ingredients, but must not be overwritten either.
QStringList ImageJob::usedFiles() const
{
    return inputFiles + QStringList(session->fileName());
}

/// Whether @p file is one of usedFiles(), whatever the paths are.
bool ImageJob::isInputFile(const QString &file) const
{
    const FileState state = FileState::of(file);
    const QStringList used = usedFiles();
    return std::any_of(used.begin(), used.end(), [&state](const QString &each) {
        return FileState::of(each).isSameFileAs(state);
    });
}

FileStates ImageJob::loadedStates() const
{
    FileStates states;
    for (const Ingredient &ingredient : ingredients()) {
        const QString file = absolutePath(textOf(ingredient.value));
        if (isDataFile(ingredient) && dataFileStates.contains(file)) {
            states.insert(file, dataFileStates.value(file));
        }
    }
    return states;
}

bool ImageJob::isBlocked(bool withChecks) const
{
    const QVector<Problem> all = problems();
    return std::any_of(all.begin(), all.end(), [withChecks](const Problem &problem) {
        return withChecks || problem.mustBeFixed;
    });
}

QString ImageJob::overwriteProblem(const QString &file) const
{
    const QString path = absolutePath(file);
    const Ingredient input = inputWithFile(ingredients(), path);
    if (input.valueIndex.isValid()) {
        return tr("%1 is the same file as the input \"%2\".").arg(file, input.name);
    }
    if (ImageGuard::isReserved(textOf(outputIngredient(ingredients()).value), path)) {
        return tr("%1 is the image or a file that a build of it writes.").arg(file);
    }
    return isInputFile(path) ? tr("%1 is one of the inputs.").arg(file) : QString();
}

Project ImageJob::project() const
{
    Project project;
    project.target = session->plugin()->getTargetName();
    for (const Ingredient &ingredient : ingredients()) {
        if (kindOf(ingredient.value) == ValueKind::Other) {
            continue;
        }
        ProjectEntry entry;
        entry.key = ingredient.key;
        entry.name = ingredient.name;
        entry.kind = kindOf(ingredient.value);
        entry.value = textOf(ingredient.value);
        if (entry.kind == ValueKind::File && !entry.value.isEmpty()) {
            entry.value = absolutePath(entry.value);
        }
        project.entries.append(entry);
    }
    return project;
}

bool ImageJob::loadProject(const Project &project, const QString &file)
{
    inputFiles.append(absolutePath(file));
    const QString target = session->plugin()->getTargetName();
    if (project.target != target) {
        return refuse(
            tr("%1 is for the target \"%2\", not for \"%3\".").arg(file, project.target, target));
    }
    QVector<QPair<Ingredient, QVariant>> changes;
    QModelIndexList named;
    const QVector<Ingredient> all = ingredients();
    for (const ProjectEntry &entry : project.entries) {
        const Ingredient ingredient = ingredientFor(entry, all);
        QVariant value;
        const QString problem = valueFor(entry, ingredient, &value);
        if (!problem.isEmpty()) {
            return refuse(file + QLatin1String(": ") + problem);
        }
        if (named.contains(ingredient.valueIndex)) {
            return refuse(tr("%1: the ingredient \"%2\" occurs twice.")
                              .arg(file, entry.key.isEmpty() ? entry.name : entry.key));
        }
        named.append(ingredient.valueIndex);
        if (entry.value != textOf(ingredient.value)) {
            changes.append({ingredient, value});
        }
    }
    QAbstractItemModel *model = session->ingredientManager()->getIngredients();
    return apply(tr("%1 could not be applied.").arg(file), [&] {
        return std::all_of(changes.begin(), changes.end(), [&](const auto &change) {
            return model->setData(change.first.valueIndex, change.second, Qt::EditRole);
        });
    });
}
