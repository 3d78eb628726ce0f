// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filestate.h"
#include "host/core/ingredients.h"
#include "host/core/problem.h"
#include "host/core/projectfile.h"

#include <QObject>
#include <QStringList>
#include <QVector>

#include <functional>
#include <limits>

class PluginSession;

/// One row of the plug-in's check table, with the ingredient and file it is about.
struct FileCheck {
    bool passed = false;      ///< Whether the check succeeded.
    QString details;          ///< What was found, in the plug-in's words.
    Ingredient ingredient;    ///< The one that was checked.
    QString file;             ///< The path that was checked.
    qint64 expectedSize = -1; ///< In bytes; -1 when any size is valid.
    qint64 actualSize = -1;   ///< In bytes; -1 when there is no such regular file.
};

/// The image that a user prepares with a plug-in: its inputs, their problems, and so what blocks a
/// build.
///
/// Values may also be edited in the model directly. An error or failed check of an ingredient is
/// dropped when the ingredient gets another value.
class ImageJob : public QObject
{
    Q_OBJECT

public:
    /// Works on the values of @p pluginSession, which must have loaded its plug-in and outlive this
    /// object.
    explicit ImageJob(PluginSession *pluginSession, QObject *parent = nullptr);

    /// Limits the problems that one input adds to an ingredient: after the first @p max follows one
    /// that says how many more there were. Without a limit, all are kept.
    void setMaxProblems(int max);

    /// @name Inputs
    /// @{

    /// Each of these applies one input; a relative path is resolved against the current directory.
    /// False when the input was refused: problems() says why, and nothing else has changed.
    bool loadConfig(const QString &file);
    bool fillFromDirectory(const QString &directory);
    bool addFile(const QString &file);
    bool setValue(const QString &nameOrKey, const QString &text);
    bool setValue(const Ingredient &ingredient, const QString &text);
    bool setImage(const QString &file);
    /// Applies the project that was read from @p file.
    bool loadProject(const Project &project, const QString &file);

    /// @}

    /// Replaces the plug-in's root object by a new one with the same values, except for data files,
    /// which the plug-in would verify again with every later one. The problems of the other values
    /// stay. False when there is no new root object; the session has none then.
    bool renewPlugin();

    /// Adds a problem that was found elsewhere, such as a file that cannot be read as a project.
    void addProblem(const Problem &problem);
    /// Forgets the problems that belong to no ingredient, for a host in which the user tries again.
    void forgetInputProblems();

    /// Runs the plug-in's checks; true when all passed.
    bool check();
    /// The results of the last check().
    QVector<FileCheck> checks() const;

    /// All current problems: with the inputs, with the values that failed in the last check(), and
    /// what the host itself finds wrong with the values. Accesses the file system.
    QVector<Problem> problems() const;
    /// Whether a build is refused; without checks, only by problems that must be fixed.
    bool isBlocked(bool withChecks) const;

    /// Why @p file must not be written: it is one of the inputs, or has the name of the image or of a
    /// file that a build writes. Empty when it may be written.
    QString overwriteProblem(const QString &file) const;
    /// The states of the current data files when the plug-in had loaded and verified them.
    FileStates loadedStates() const;
    /// The current values, for a project file.
    Project project() const;
    /// All ingredients with their current values.
    QVector<Ingredient> ingredients() const;

signals:
    /// problems() may have changed.
    void problemsChanged();

private:
    bool apply(const QString &refusal, const std::function<bool()> &operation);
    bool refuse(const QString &text, const Ingredient &ingredient = {});
    void attach();
    void noteError(const QString &message);
    void noteChange(const QModelIndex &cell);
    void settle(const Ingredient &ingredient);
    void addMessages(const QStringList &messages, const Ingredient &ingredient);
    void addProblems(const QVector<Problem> &problems);
    bool isInputFile(const QString &file) const;
    QStringList usedFiles() const;
    Ingredient ingredientAt(const QModelIndex &cell) const;

    PluginSession *session;
    int maxProblems = std::numeric_limits<int>::max();
    QVector<Problem> inputProblems;
    QVector<FileCheck> lastChecks;
    QVector<Problem> failedChecks;
    QStringList inputFiles;
    FileStates dataFileStates;
    /// Errors of the plug-in that have not been assigned to a value yet.
    QStringList pendingErrors;
    QVector<Problem> pendingConflicts;
    bool isApplying = false;
};
