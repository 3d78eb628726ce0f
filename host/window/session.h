// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/build.h"
#include "host/core/problem.h"
#include "host/core/project.h"
#include "host/window/filewatcher.h"

#include <QHash>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

class ILoomwrightPlugin;
class Plugin;
class QUndoStack;
class Values;

/// How the image compares to the values.
enum class BuildState {
    NotBuilt, ///< Nothing was built from these values.
    Running,
    Stopping, ///< The user has stopped the build, and the stitcher is being terminated.
    Current,  ///< Values and files are still those that the image was built from.
    Outdated, ///< The image was built, but a value or a file has changed since.
    Failed,   ///< The build from these values failed.
    Stopped   ///< The build from these values was stopped by the user.
};

/// The state of a window: a plug-in with the values of an image, their problems, the project file
/// that they are saved in, and the builds.
///
/// Everything is checked again after every change, including changes of files on disk.
///
/// Without a plug-in, and while a build runs, the operations that change values do nothing.
class Session : public QObject
{
    Q_OBJECT

public:
    /// Creates a session without a plug-in; see loadPlugin().
    explicit Session(QObject *parent = nullptr);
    ~Session() override;

    /// Loads the first of @p candidates that exists, replacing the current plug-in. On failure the
    /// current one stays, and pluginProblem() says why.
    bool loadPlugin(const QStringList &candidates);
    /// Why there is no plug-in, or why the last one could not be loaded.
    QString pluginProblem() const;
    /// Whether there is a plug-in.
    bool isLoaded() const;
    /// The plug-in's root object; null when there is none. It is replaced between
    /// pluginAboutToChange() and pluginChanged().
    ILoomwrightPlugin *root() const;
    /// The file of the plug-in.
    QString pluginFile() const;
    /// Chooses the stitcher; an empty name for the one in PATH.
    void setStitcher(const QString &file);

    /// Opens directories, files, configurations and project files, each by its kind. Directories
    /// start a new set of input files, everything else adds to the current one.
    void open(const QStringList &paths);
    /// Fills ingredients again from the directories that were opened last; values that were chosen
    /// among several candidates stay.
    void rescan();
    /// Whether rescan() has directories to search.
    bool hasDirectories() const;
    /// Sets one value; a path is resolved against the current directory. An empty text clears it.
    void setValue(const IngredientId &id, const QString &text);
    /// The user's changes to the values since the project was opened or the plug-in was loaded.
    QUndoStack *history() const;

    /// Replaces the values with those of @p file. A manifest can be opened too, but does not become
    /// the project file.
    bool openProject(const QString &file);
    /// Writes the values to a project file; noticed() reports problems.
    bool saveProject(const QString &file);
    /// Writes a stitcher configuration and reports through noticed() which values it cannot hold.
    bool saveConfiguration(const QString &file);
    /// Writes the manifest of the last build beside its image.
    void writeManifest();
    /// The project file that was opened or saved last; empty when there is none.
    QString projectFile() const;
    /// Whether another program has changed the project file since it was opened or saved.
    bool isProjectFileChanged() const;
    /// Whether the values differ from those of the project file or, without one, from the defaults.
    bool isModified() const;

    /// The current values.
    Project project() const;
    /// All ingredients in tree order; empty without a plug-in.
    Ingredients ingredients() const;
    /// All problems as of the last check.
    Problems problems() const;
    /// What a problem with the stitcher has in place of an ingredient.
    static IngredientId stitcherId();
    /// The files to choose from when several were found for an ingredient, or when one was found
    /// that is not its value; else empty.
    QStringList candidates(const IngredientId &id) const;
    /// Checks at once; a changed value is otherwise checked when the event loop runs.
    void check();
    /// Checks when the event loop runs.
    void checkSoon();
    /// Postpones whatever would replace the ingredient model while a value is being edited.
    void setEditing(bool newEditing);

    /// Starts a build; buildFinished() follows.
    /// @param timeoutMs how long the stitcher may run, in milliseconds; 0 for forever
    void build(int timeoutMs);
    /// Stops the build; buildFinished() follows.
    void stopBuild();
    /// Whether a build is running.
    bool isBuilding() const;
    /// How the image compares to the current values and files.
    BuildState buildState() const;
    /// The last build; only meaningful after one.
    const BuildResult &buildResult() const;
    /// What differs now from what the image was built from: names of ingredients and paths.
    QStringList changesSinceBuild() const;
    /// Whether the file of @p ingredient was modified after the image, which an earlier session may
    /// have built.
    bool isNewerThanImage(const Ingredient &ingredient) const;

signals:
    /// A status message of the plug-in, or the stitcher's standard output.
    void statusMessage(const QString &message);
    /// An error of the plug-in, or the stitcher's standard error.
    void errorMessage(const QString &message);
    /// A data file was loaded: the data views have been replaced.
    void dataFileChanged();
    /// Everything obtained from root() is about to become invalid.
    void pluginAboutToChange();
    /// root() returns a new object, or null.
    void pluginChanged();

    /// A longer operation has started or ended.
    void busyChanged(bool isBusy);
    /// A text that belongs to no ingredient and should be shown once.
    void noticed(const QString &text);
    /// projectFile() or isModified() may have changed.
    void projectChanged();
    /// Values, problems, files or the state of the build have changed, and have been checked.
    void changed();

    /// A build has started; @p stitcher is the file that will run.
    void buildStarted(const QString &stitcher);
    /// Files are being hashed: @p done of @p total bytes.
    void hashing(qint64 done, qint64 total);
    /// The build has ended with @p result.
    void buildFinished(const BuildResult &result);

private:
    /// Everything that undo restores.
    struct Snapshot {
        Project values;       ///< The values of all ingredients.
        Problems ambiguities; ///< Where one of several candidates is to be chosen.
        QHash<IngredientId, QStringList>
            candidates;          ///< All files that were found for an ingredient.
        QStringList directories; ///< Where input files were found.
    };
    class ValuesCommand;

    Snapshot snapshot() const;
    void restore(const Snapshot &earlier);
    void run(const std::function<void()> &operation);
    void change(const QString &text, const std::function<void()> &operation);
    void dropPlugin(const QString &problem);
    void openInputs(const QStringList &inputs);
    void clearInputFiles();
    bool takeIn(const QString &path);
    void keepChosenCandidates(const Snapshot &before);
    void apply(const Snapshot &earlier);
    void collectCandidates();
    void reloadDataFiles();
    void reportRejections();
    Problems findings() const;
    void watchFiles();
    void finishBuild(const BuildResult &result);
    void setProjectFile(const QString &file);

    std::unique_ptr<Plugin> plugin;
    std::unique_ptr<Values> values;
    std::unique_ptr<Build> runningBuild;
    QString problemText;
    QString stitcher;
    FileWatcher watcher;
    QTimer checkTimer;
    Problems currentProblems;
    QHash<IngredientId, QStringList> candidateFiles;
    QStringList directories;
    QString projectPath;
    FileState projectState;
    Project savedValues;
    QUndoStack *undoStack;
    Project builtValues;
    BuildResult lastResult;
    BuildState lastState = BuildState::NotBuilt;
    bool isEditing = false;
};
