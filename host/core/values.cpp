// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/values.h"

#include "host/core/configuration.h"
#include "host/core/findings.h"
#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/plugintexts.h"
#include "host/core/stagedfile.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QAbstractItemModel>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace {

/// The key and value in a message about a second value for one key.
std::optional<QPair<QString, QString>> candidateIn(const QString &message)
{
    for (const char *prefix : {PluginText::duplicateIngredient, PluginText::duplicateEntry}) {
        if (message.startsWith(QLatin1String(prefix))) {
            const QString entry = message.mid(int(qstrlen(prefix)));
            return qMakePair(entry.section(QLatin1Char('='), 0, 0).trimmed(),
                             entry.section(QLatin1Char('='), 1).trimmed());
        }
    }
    return std::nullopt;
}

/// The SHA-256 of a regular file; empty if it cannot be read.
QByteArray hashOf(const FileRecord &record)
{
    QFile file(record.file);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const bool valid
        = record.state.isRegular() && file.open(QIODevice::ReadOnly) && hash.addData(&file);
    return valid ? hash.result().toHex() : QByteArray();
}

QString fileRejection(const QString &file)
{
    const QFileInfo info(absolutePath(file));
    if (!info.exists()) {
        return QStringLiteral("The file %1 was rejected: it does not exist.").arg(file);
    }
    return (info.isFile()
                ? QStringLiteral("The file %1 was rejected: its name matches no ingredient.")
                : QStringLiteral("The file %1 was rejected: it is not a regular file."))
        .arg(file);
}

QString directoryRejection(const QString &directory)
{
    const QFileInfo info(absolutePath(directory));
    QString reason = QStringLiteral("no file name in it matches an ingredient");
    if (!info.exists()) {
        reason = QStringLiteral("it does not exist");
    } else if (!info.isDir()) {
        reason = QStringLiteral("it is a file");
    } else if (!info.isReadable() || !info.isExecutable()) {
        reason = QStringLiteral("it cannot be read");
    }
    return QStringLiteral("%1 was rejected: %2.").arg(directory, reason);
}

/// Whether another problem of the same ingredient explains @p problem: what the host has found out
/// about a file explains why a check of the plug-in failed, and that there is no file explains why
/// the plug-in could not load it.
bool isConsequence(const Problem &problem, const Problems &all)
{
    const bool isFailedCheck = problem.kind == ProblemKind::Check;
    const bool isMissing = problem.kind == ProblemKind::Message
        && !FileState::of(problem.files.value(0)).isRegular();
    if (problem.ingredient.isEmpty() || !(isFailedCheck || isMissing)) {
        return false;
    }
    return std::any_of(all.begin(), all.end(), [&](const Problem &each) {
        const bool explains
            = each.kind == ProblemKind::Finding || (isMissing && each.kind == ProblemKind::Check);
        return explains && each.ingredient == problem.ingredient
            && each.severity != Severity::Warning;
    });
}

} // namespace

Values::Values(Plugin *loadedPlugin, QObject *parent)
    : QObject(parent)
    , plugin(loadedPlugin)
{
    connect(plugin, &Plugin::errorMessage, this, &Values::handleError);
    connect(plugin, &Plugin::renewed, this, &Values::attach);
    attach();
}

/// Connected after the plug-in's own slots, so that the errors that a new value causes in the
/// plug-in arrive before handleChange().
void Values::attach()
{
    cachedIngredients.reset();
    connect(plugin->model(), &QAbstractItemModel::dataChanged, this, &Values::handleChange);
    connect(plugin->model(), &QAbstractItemModel::modelReset, this,
            [this] { cachedIngredients.reset(); });
}

const Ingredients &Values::ingredients() const
{
    if (!cachedIngredients) {
        cachedIngredients = plugin->isLoaded() ? ingredientsOf(*plugin->model()) : Ingredients();
    }
    return *cachedIngredients;
}

void Values::handleError(const QString &message)
{
    if (!reports) {
        return; // It concerns no value.
    }
    const auto candidate = candidateIn(message);
    if (candidate) {
        reports->candidates[candidate->first].append(candidate->second);
    } else if (message.startsWith(QLatin1String(PluginText::malformedEntry))) {
        inputProblems.addMessages({message});
    } else {
        reports->errors.append(message.trimmed());
    }
}

void Values::handleChange(const QModelIndex &cell)
{
    cachedIngredients.reset();
    if (isIgnoringChanges) {
        return;
    }
    const Ingredients all = ingredients();
    const auto ingredient = std::find_if(all.begin(), all.end(), [&cell](const Ingredient &each) {
        return each.index.siblingAtColumn(0) == cell.siblingAtColumn(0);
    });
    if (ingredient != all.end()) {
        settle(ingredient->id);
        if (ingredient->isDataFile()) {
            noteLoaded(*ingredient);
        }
    }
    emit changed();
}

/// Notes which content of a data file was loaded, with what errors.
void Values::noteLoaded(const Ingredient &dataFile)
{
    if (reports) {
        // Only for such a value does the plug-in do work whose errors are about that value.
        inputProblems.addMessages(std::exchange(reports->errors, {}), dataFile);
    }
    const QString file = absolutePath(dataFile.text());
    FileRecord loaded = recordOf(file);
    loaded.sha256 = hashOf(loaded);
    loadedDataFiles.insert(file, loaded);
}

/// Forgets the problems of the value that the ingredient had.
void Values::settle(const IngredientId &id)
{
    inputProblems.forget(id);
    lastChecks.erase(
        std::remove_if(lastChecks.begin(), lastChecks.end(),
                       [&id](const FileCheck &check) { return check.ingredient.id == id; }),
        lastChecks.end());
}

void Values::warn(const QString &text, const QStringList &files)
{
    addProblem({ProblemKind::Input, Severity::Warning, text, {}, files});
}

bool Values::reject(const QString &text, const IngredientId &ingredient)
{
    addProblem({ProblemKind::Input, Severity::Fatal, text, ingredient});
    return false;
}

void Values::addProblem(const Problem &problem)
{
    inputProblems.add(problem);
    emit changed();
}

void Values::forgetInputProblems()
{
    inputProblems.forget({});
    emit changed();
}

Problems Values::ambiguities() const
{
    return inputProblems.ambiguities();
}

void Values::setAmbiguities(const Problems &earlier)
{
    inputProblems.setAmbiguities(earlier);
    emit changed();
}

/// Applies an input and records the errors that it causes.
/// @param errors set to the errors of a rejected input, which then are left to the caller
bool Values::apply(DataFile dataFile, const std::function<bool()> &operation, QStringList *errors)
{
    const bool mustRenew
        = dataFile != DataFile::Untouched && plugin->ingredientManager()->dataLoaded();
    const Ingredients before = mustRenew ? loadedFiles() : Ingredients();
    if (mustRenew && !renew()) {
        return false;
    }
    reports.emplace();
    const bool taken = operation();
    const Reports reported = *std::exchange(reports, std::nullopt);
    cachedIngredients.reset();
    if (dataFile == DataFile::MaybeSet || !taken) {
        restore(before);
    }
    for (const Ingredient &ingredient : ingredients()) {
        const QStringList candidates = reported.candidates.value(ingredient.id.key);
        if (!candidates.isEmpty()) {
            inputProblems.addCandidates(candidates, ingredient);
        }
    }
    if (taken) {
        inputProblems.addMessages(reported.errors);
    } else if (errors) {
        *errors = reported.errors;
    }
    emit changed();
    return taken;
}

/// Replaces the plug-in's root object by a new one with the same values, except for data files.
/// False when there is no new root object.
bool Values::renew()
{
    const Ingredients old = ingredients();
    const QScopedValueRollback<bool> ignoring(isIgnoringChanges, true);
    if (!plugin->renew()) {
        return false;
    }
    const auto silent = plugin->silence();
    for (const Ingredient &ingredient : old) {
        const auto current = findIngredient(ingredients(), ingredient.id);
        if (!ingredient.isDataFile() && current && current->value != ingredient.value) {
            plugin->model()->setData(current->index, ingredient.value, Qt::EditRole);
        }
    }
    return true;
}

Ingredients Values::loadedFiles() const
{
    const Ingredients all = ingredients();
    Ingredients files;
    std::copy_if(all.begin(), all.end(), std::back_inserter(files), [](const Ingredient &each) {
        return each.isDataFile() && !each.text().isEmpty();
    });
    return files;
}

/// Loads data files again that renew() has left out, unless their ingredients have other values
/// now.
void Values::restore(const Ingredients &files)
{
    const QScopedValueRollback<bool> ignoring(isIgnoringChanges, true);
    const auto silent = plugin->silence();
    for (const Ingredient &file : files) {
        const auto current = findIngredient(ingredients(), file.id);
        if (current && current->text().isEmpty()) {
            setText(*current, file.text());
        }
    }
}

QString Values::setText(const Ingredient &ingredient, const QString &text)
{
    const bool isFile = kindOf(ingredient.value) == ValueKind::File;
    QVariant value;
    const QString problem
        = valueFromText(isFile ? absolutePath(text) : text, ingredient.value, &value);
    if (!problem.isEmpty()) {
        return ingredient.id.name + QLatin1String(": ") + problem;
    }
    return plugin->model()->setData(ingredient.index, value, Qt::EditRole)
        ? QString()
        : QStringLiteral("\"%1\" cannot be set.").arg(ingredient.id.name);
}

bool Values::loadConfiguration(const QString &file, const QString &shownName)
{
    const QString name
        = QStringLiteral("The configuration %1").arg(shownName.isEmpty() ? file : shownName);
    const QString path = absolutePath(file);
    sourceFiles.append(path);
    QStringList errors;
    const bool taken = apply(
        DataFile::MaybeSet, [&] { return plugin->ingredientManager()->loadConfigFromFile(path); },
        &errors);
    if (!taken) {
        if (errors.isEmpty()) {
            errors.append(QStringLiteral("no line in it sets an ingredient"));
        }
        return reject(
            QStringLiteral("%1 was rejected: %2.").arg(name, errors.join(QStringLiteral("; "))));
    }
    const auto silent = plugin->silence();
    const QByteArray written = configurationOf(*plugin).value_or(QByteArray());
    for (const QString &remark : ineffectiveEntries(contentOf(path), written, ingredients())) {
        warn(QStringLiteral("%1, %2").arg(name, remark));
    }
    return true;
}

/// Those of @p files whose names match an ingredient. Only the plug-in knows, and only by setting a
/// value.
QStringList Values::matchingNames(const QStringList &files)
{
    if (files.isEmpty()) {
        return {};
    }
    QStringList matching;
    const Ingredients before = loadedFiles();
    const Ingredients old = ingredients();
    {
        const QScopedValueRollback<bool> ignoring(isIgnoringChanges, true);
        const auto silent = plugin->silence();
        std::copy_if(files.begin(), files.end(), std::back_inserter(matching),
                     [this](const QString &file) {
                         return plugin->ingredientManager()->loadIngredientFile(file);
                     });
        cachedIngredients = old;
    }
    if (!matching.isEmpty() && renew()) {
        restore(before);
    }
    return matching;
}

bool Values::fillFromDirectory(const QString &directory)
{
    const QString path = absolutePath(directory);
    SkippedEntries skipped = skippedEntriesOf(path);
    const QStringList symlinks = matchingNames(skipped.symlinks);
    if (!plugin->isLoaded()) {
        return false;
    }
    const bool taken = apply(DataFile::MaybeSet, [&] {
        return plugin->ingredientManager()->generateConfigFromDirectory(path);
    });
    if (!taken) {
        reject(directoryRejection(directory));
        skipped.unreadable.removeAll(path);
    }
    const auto warnAboutSkipped = [this](const QString &text, const QStringList &files) {
        if (!files.isEmpty()) {
            warn(text, files);
        }
    };
    warnAboutSkipped(QStringLiteral("Skipped, since they cannot be read"), skipped.unreadable);
    warnAboutSkipped(QStringLiteral("Symlinks were skipped, although their names match"), symlinks);
    warnAboutSkipped(QStringLiteral("Files were skipped, as their names are not valid in the "
                                    "locale's encoding"),
                     skipped.undecodable);
    return taken;
}

bool Values::addFile(const QString &file)
{
    const bool taken = apply(DataFile::MaybeSet, [&] {
        return plugin->ingredientManager()->loadIngredientFile(absolutePath(file));
    });
    return taken || reject(fileRejection(file));
}

bool Values::setValue(const QString &nameOrKey, const QString &text)
{
    const auto ingredient = findIngredient(ingredients(), nameOrKey);
    return ingredient
        ? setValue(ingredient->id, text)
        : reject(QStringLiteral("No ingredient has the name or key \"%1\".").arg(nameOrKey));
}

bool Values::setValue(const IngredientId &id, const QString &text)
{
    const auto ingredient = findIngredient(ingredients(), id);
    if (!ingredient) {
        return reject(QStringLiteral("There is no ingredient \"%1\".").arg(id.name));
    }
    QString problem;
    const bool taken = apply(ingredient->isDataFile() ? DataFile::Set : DataFile::Untouched, [&] {
        settle(id); // Setting the same value again settles its problems too.
        problem = setText(*findIngredient(ingredients(), id), text);
        return problem.isEmpty();
    });
    return taken || reject(problem, id);
}

bool Values::setImage(const QString &file)
{
    const auto output = outputIngredient(ingredients());
    return output ? setValue(output->id, file)
                  : reject(QStringLiteral("This target writes no image."));
}

bool Values::loadProject(const Project &newValues, const QString &file)
{
    const QString prefix = file.isEmpty() ? QString() : file + QLatin1String(": ");
    const QString problem
        = projectProblem(newValues, plugin->root()->getTargetName(), ingredients());
    if (!problem.isEmpty()) {
        return reject(prefix + problem);
    }
    QList<ProjectEntry> entries = newValues.entries;
    for (const Ingredient &loaded : loadedFiles()) {
        const bool isOmitted
            = std::none_of(entries.begin(), entries.end(), [&](const ProjectEntry &entry) {
                  return ingredientFor(entry, ingredients())->id == loaded.id;
              });
        if (isOmitted) {
            // It keeps its value, which it loses when the plug-in is renewed.
            entries.append({loaded.id, ValueKind::File, loaded.text()});
        }
    }
    const bool taken = apply(DataFile::Set, [&] {
        return std::all_of(entries.begin(), entries.end(), [this](const ProjectEntry &entry) {
            const auto current = ingredientFor(entry, ingredients());
            settle(current->id);
            return entry.value == current->text() || setText(*current, entry.value).isEmpty();
        });
    });
    if (!taken) {
        return reject(prefix + QStringLiteral("The values could not be applied."));
    }
    // Saving a project over a manifest would lose the record of the build.
    setProjectFile(newValues.build ? QString() : file);
    if (newValues.build) {
        sourceFiles.append(absolutePath(file));
    }
    return true;
}

bool Values::reloadDataFiles()
{
    const Ingredients files = loadedFiles();
    return apply(DataFile::Set, [&] {
        return std::all_of(files.begin(), files.end(), [this](const Ingredient &file) {
            const auto current = findIngredient(ingredients(), file.id);
            return current && setText(*current, file.text()).isEmpty();
        });
    });
}

bool Values::hasOutdatedDataFiles()
{
    for (const Ingredient &file : loadedFiles()) {
        FileRecord &loaded = loadedDataFiles[file.text()];
        const FileRecord present = recordOf(file.text());
        if (present.state == loaded.state) {
            continue;
        }
        // Loading a large file costs more than reading it.
        if (loaded.sha256.isEmpty() || present.state.size != loaded.state.size
            || hashOf(present) != loaded.sha256) {
            return true;
        }
        loaded.state = present.state;
    }
    return false;
}

void Values::check()
{
    checkedFiles.clear();
    for (const QString &file : inputFilesOf(ingredients())) {
        checkedFiles.insert(file, recordOf(file));
    }
    plugin->executionManager()->verifyInputs();
    lastChecks = checksIn(*plugin->executionManager()->getIngredientChecks(), ingredients());
    emit changed();
}

QVector<FileCheck> Values::checks() const
{
    return lastChecks;
}

FileRecords Values::inputRecords() const
{
    FileRecords records = checkedFiles;
    for (const Ingredient &ingredient : ingredients()) {
        const QString file = absolutePath(ingredient.text());
        if (ingredient.isDataFile() && loadedDataFiles.contains(file)) {
            records.insert(file, loadedDataFiles.value(file));
        }
    }
    return records;
}

Problems Values::problems() const
{
    Problems problems = inputProblems.current() + findingsFor(ingredients());
    const FileState imageState = FileState::of(image());
    const QStringList inputs = inputFilesOf(ingredients());
    for (const QString &file : protectedFiles()) {
        if (!inputs.contains(file) && FileState::of(file).isSameFileAs(imageState)) {
            problems.append({ProblemKind::Finding,
                             Severity::Fatal,
                             QStringLiteral("The image is the same file as one that was loaded"),
                             outputIngredient(ingredients())->id,
                             {file}});
        }
    }
    problems += failuresIn(lastChecks);
    const Problems all = problems;
    problems.erase(
        std::remove_if(problems.begin(), problems.end(),
                       [&all](const Problem &problem) { return isConsequence(problem, all); }),
        problems.end());
    std::stable_sort(
        problems.begin(), problems.end(),
        [](const Problem &left, const Problem &right) { return left.kind < right.kind; });
    return problems;
}

bool Values::isBlocked(bool withChecks) const
{
    const Severity least = withChecks ? Severity::Error : Severity::Fatal;
    const Problems all = problems();
    return std::any_of(all.begin(), all.end(),
                       [least](const Problem &problem) { return problem.severity >= least; });
}

QString Values::image() const
{
    const auto output = outputIngredient(ingredients());
    return output ? absolutePath(output->text()) : QString();
}

void Values::withImage(const QString &path, const std::function<void()> &operation)
{
    const auto output = outputIngredient(ingredients());
    if (!output) {
        return;
    }
    const QScopedValueRollback<bool> ignoring(isIgnoringChanges, true);
    setText(*output, path);
    operation();
    setText(*output, output->text());
}

Project Values::project() const
{
    Project project;
    project.target = plugin->root()->getTargetName();
    for (const Ingredient &ingredient : ingredients()) {
        ProjectEntry entry;
        entry.ingredient = ingredient.id;
        entry.kind = kindOf(ingredient.value);
        entry.value
            = entry.kind == ValueKind::File ? absolutePath(ingredient.text()) : ingredient.text();
        if (entry.kind != ValueKind::Other) {
            project.entries.append(entry);
        }
    }
    return project;
}

void Values::makePathsAbsolute()
{
    const Ingredients all = ingredients();
    for (const Ingredient &ingredient : all) {
        const QString path = ingredient.text();
        if (kindOf(ingredient.value) == ValueKind::File && path != absolutePath(path)) {
            setText(ingredient, path);
        }
    }
}

void Values::setProjectFile(const QString &file)
{
    projectFile = absolutePath(file);
}

QStringList Values::protectedFiles() const
{
    QStringList files = inputFilesOf(ingredients()) + sourceFiles;
    files << projectFile << plugin->fileName();
    files.removeAll(QString());
    return files;
}

QString Values::overwriteProblem(const QString &file) const
{
    const auto input = inputWithFile(ingredients(), file);
    if (input) {
        return QStringLiteral("%1 is the same file as the input \"%2\".").arg(file, input->id.name);
    }
    const FileState state = FileState::of(file);
    if (file == resolvedTarget(image()) || FileState::of(image()).isSameFileAs(state)) {
        return QStringLiteral("%1 is the image.").arg(file);
    }
    const QStringList files = protectedFiles();
    const bool used = std::any_of(files.begin(), files.end(), [&state](const QString &each) {
        return FileState::of(each).isSameFileAs(state);
    });
    return used ? QStringLiteral("%1 is a file that was loaded.").arg(file) : writeProblem(file);
}

QString Values::saveProblem(const QString &file) const
{
    return file == resolvedTarget(projectFile) ? writeProblem(file) : overwriteProblem(file);
}
