// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filecheck.h"
#include "host/core/filehasher.h"
#include "host/core/inputproblems.h"
#include "host/core/project.h"

#include <QObject>

#include <functional>
#include <optional>

class Plugin;

/// The values from which an image is built: the inputs that a user applies, their problems, and so
/// what blocks a build.
///
/// An error or failed check of an ingredient is dropped when the ingredient gets another value,
/// also when the plug-in itself changes it.
///
/// Whenever the plug-in loads a data file, it verifies the earlier ones again. So before an
/// operation that may load one, the plug-in is renewed if it has loaded one already.
class Values : public QObject
{
    Q_OBJECT

public:
    /// Works on the values of @p loadedPlugin, which must have been loaded and outlive this object.
    explicit Values(Plugin *loadedPlugin, QObject *parent = nullptr);

    /// @name Inputs
    /// Each applies one input; a relative path is resolved against the current directory. False
    /// when it was rejected: problems() says why, and nothing else has changed. If the plug-in
    /// could not be renewed, it is not loaded any more; nothing else may be called then.
    /// @{
    /// @param shownName how problems name the file, if not by its path
    bool loadConfiguration(const QString &file, const QString &shownName = {});
    bool fillFromDirectory(const QString &directory);
    bool addFile(const QString &file);
    bool setValue(const QString &nameOrKey, const QString &text);
    bool setValue(const IngredientId &id, const QString &text);
    bool setImage(const QString &file);
    /// Applies the project that was read from @p file; an empty name for one that was not.
    bool loadProject(const Project &newValues, const QString &file);
    /// Loads the data files again, for when they have changed on disk.
    bool reloadDataFiles();
    /// @}

    /// Whether the content of a data file has changed on disk since the plug-in has loaded it.
    bool hasOutdatedDataFiles();

    /// Adds a problem that was found elsewhere, such as a file that cannot be read as a project.
    void addProblem(const Problem &problem);
    /// Adds the problem that an input was rejected; returns false.
    bool reject(const QString &text, const IngredientId &ingredient = {});
    /// Forgets the problems that belong to no ingredient, for a host in which the user tries again.
    void forgetInputProblems();
    /// The problems with ingredients for which several files were found and none was chosen.
    Problems ambiguities() const;
    /// Restores them when earlier values are restored.
    void setAmbiguities(const Problems &earlier);

    /// Notes the states of the input files, then runs the plug-in's checks.
    void check();
    /// The results of the last check().
    QVector<FileCheck> checks() const;
    /// The states of the input files just before the last check(), or when the plug-in loaded them.
    FileRecords inputRecords() const;

    /// All current problems, the causes first: with the inputs, with values that failed in the last
    /// check(), and what the host itself finds wrong. Accesses the file system.
    Problems problems() const;
    /// Whether a build is blocked; without checks, only by problems that are fatal.
    bool isBlocked(bool withChecks) const;

    /// All ingredients with their current values, in tree order.
    const Ingredients &ingredients() const;
    /// The path of the image; empty when there is none.
    QString image() const;
    /// The current values, for a project file.
    Project project() const;
    /// Makes every relative path absolute, against the current directory.
    void makePathsAbsolute();

    /// Runs @p operation while the image has another path. No problem is noticed meanwhile.
    void withImage(const QString &path, const std::function<void()> &operation);

    /// The project file in use, which nothing but saving the project may overwrite.
    void setProjectFile(const QString &file);
    /// The files that a build must not replace: the inputs, a configuration, manifest or project
    /// that was loaded, and the plug-in.
    QStringList protectedFiles() const;
    /// Why @p file, a resolved path, must not be written because it is one of those files or the
    /// image, or cannot be written. Empty when nothing is known to be in the way.
    QString overwriteProblem(const QString &file) const;
    /// The same for saving the values as a project, which may replace the project file in use.
    QString saveProblem(const QString &file) const;

signals:
    /// Values or their problems may have changed.
    void changed();

private:
    /// What an operation does with the data file.
    enum class DataFile { Untouched, MaybeSet, Set };
    /// What the plug-in reports while an input is applied.
    struct Reports {
        QStringList errors;                     ///< Those that have not been assigned to a value.
        QHash<QString, QStringList> candidates; ///< Second values for a key, by key.
    };

    void attach();
    void handleError(const QString &message);
    void handleChange(const QModelIndex &cell);
    void noteLoaded(const Ingredient &dataFile);
    bool apply(DataFile dataFile, const std::function<bool()> &operation,
               QStringList *errors = nullptr);
    bool renew();
    Ingredients loadedFiles() const;
    void restore(const Ingredients &files);
    QStringList matchingNames(const QStringList &files);
    QString setText(const Ingredient &ingredient, const QString &text);
    void settle(const IngredientId &id);
    void warn(const QString &text, const QStringList &files = {});

    Plugin *plugin;
    InputProblems inputProblems;
    QVector<FileCheck> lastChecks;
    FileRecords checkedFiles;
    FileRecords loadedDataFiles;
    QStringList sourceFiles; ///< Configurations and manifests that were loaded.
    QString projectFile;
    mutable std::optional<Ingredients> cachedIngredients;
    std::optional<Reports> reports; ///< While an input is applied.
    bool isIgnoringChanges = false; ///< While values are changed that stay what they are.
};
