// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/filewatcher.h"
#include "host/core/lastbuild.h"
#include "host/core/problem.h"
#include "host/core/projectfile.h"

#include <QHash>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>
#include <memory>

class BuildRunner;
class IExecutionManager;
class IIngredientManager;
class ILoomwrightPlugin;
class ImageJob;
class PluginSession;

/// The state of a window: a plug-in with the values of an image, their problems, the project file
/// that they are saved in, and the builds.
///
/// Everything is checked again after every change, including changes of files on disk. Whenever the
/// plug-in loads a data file, it verifies the earlier ones again. So a data file is loaded into a
/// new root object, which is given the other values.
///
/// Without a plug-in, and while a build runs, the operations that change values do nothing.
class ImageSession : public QObject
{
    Q_OBJECT

public:
    /// Creates a session without a plug-in; see loadPlugin().
    explicit ImageSession(QObject *parent = nullptr);
    ~ImageSession() override;

    /// Loads the first of @p candidates that exists, replacing the current plug-in. On failure the
    /// current one stays, and pluginProblem() says why.
    bool loadPlugin(const QStringList &candidates);
    /// Why there is no plug-in, or why the last one could not be loaded.
    QString pluginProblem() const;
    /// Whether there is a plug-in.
    bool isLoaded() const;
    /// The plug-in; null when there is none. It is replaced between pluginAboutToChange() and
    /// pluginChanged().
    ILoomwrightPlugin *plugin() const;
    /// The file of the plug-in.
    QString pluginFile() const;

    /// Opens directories, files, configurations and project files, each by its kind.
    void open(const QStringList &paths);
    /// Fills ingredients again from the directories that were opened last; values that were chosen
    /// among several candidates stay.
    void rescan();
    /// Sets one value; a path is resolved against the current directory. An empty text clears it.
    void setValue(const QString &name, const QString &key, const QString &text);
    /// Restores earlier values, for undo and redo; valuesChanged() is not emitted.
    void restore(const Project &values);

    /// Replaces the values with those of @p file. A manifest can be opened too, but does not become
    /// the project file.
    bool openProject(const QString &file);
    /// Writes the values to a project file; noticed() reports problems.
    bool saveProject(const QString &file);
    /// Writes a stitcher configuration and reports through noticed() which values it cannot hold.
    bool saveConfiguration(const QString &file);
    /// The project file that was opened or saved last; empty when there is none.
    QString projectFile() const;
    /// Whether the values differ from those of the project file or, without one, from the defaults.
    bool isModified() const;

    /// The current values.
    Project values() const;
    /// All ingredients in tree order; empty without a plug-in.
    QVector<Ingredient> ingredients() const;
    /// All problems as of the last check; for an ingredient with very many, the first ones
    /// and how many more there are.
    QVector<Problem> problems() const;
    /// The files to choose from when several were found for an ingredient; else empty.
    QStringList candidates(const QString &name, const QString &key) const;
    /// Checks at once; a changed value is otherwise checked when the event loop runs.
    void check();
    /// Postpones whatever would replace the ingredient model while a value is being edited.
    void setEditing(bool newEditing);

    /// Starts a build; buildFinished() follows.
    void build(const BuildOptions &options);
    /// Terminates the stitcher, or stops hashing the image; buildFinished() follows.
    void stopBuild();
    /// Whether a build is running.
    bool isBuilding() const;
    /// Whether the last build was stopped by stopBuild().
    bool isStopped() const;
    /// How the image compares to the current values and files.
    BuildState buildState() const;
    /// The last build, the running one included.
    const LastBuild &lastBuild() const;
    /// Whether the file of @p ingredient has changed since the image was built.
    bool isNewerThanImage(const Ingredient &ingredient) const;

signals:
    /// A status message of the plug-in, or the stitcher's standard output.
    void statusMessage(const QString &message);
    /// An error of the plug-in, or the stitcher's standard error.
    void errorMessage(const QString &message);
    /// A data file was loaded: the data views have been replaced.
    void dataFileChanged();
    /// Everything obtained from plugin() is about to become invalid.
    void pluginAboutToChange();
    /// plugin() returns a new object, or null.
    void pluginChanged();

    /// A longer operation has started or ended.
    void busyChanged(bool isBusy);
    /// A text that belongs to no ingredient and should be shown once.
    void noticed(const QString &text);
    /// The user has changed values; @p text names the change.
    void valuesChanged(const QString &text, const Project &before, const Project &after);
    /// Another project was opened or another plug-in loaded; the earlier values are gone.
    void projectOpened();
    /// projectFile() or isModified() may have changed.
    void projectChanged();
    /// Values, problems, files or the state of the build have changed, and have been checked.
    void changed();

    /// A build has started.
    void buildStarted();
    /// The image is being hashed: @p done of @p total bytes.
    void hashing(qint64 done, qint64 total);
    /// The build has ended with @p result.
    void buildFinished(const BuildResult &result);

private:
    enum class DataFile { TakeOver, Leave };

    void change(const QString &text, const std::function<void()> &operation);
    void inFreshPlugin(DataFile dataFile, const std::function<bool()> &operation);
    bool renewPlugin();
    void dropPlugin(const QString &problem);
    void takeIn(const QString &path);
    void keepChosenCandidates(const Project &before);
    void collectCandidates();
    void noteFileChanges(const QStringList &files);
    void reloadDataFile();
    void reportRefusals();
    void relayError(const QString &message);
    void finishBuild(const BuildResult &result);
    QString imageFile() const;

    std::unique_ptr<PluginSession> session;
    std::unique_ptr<ImageJob> job;
    std::unique_ptr<BuildRunner> runner;
    QString problemText;
    FileWatcher watcher;
    QTimer checkTimer;
    QVector<Problem> currentProblems;
    FileStates checkedStates; ///< Of the input files, from just before the last check.
    QHash<QString, QStringList> candidateFiles;
    QStringList directories;
    QString projectPath;
    Project savedValues;
    LastBuild latestBuild;
    bool isChecking = false;
    bool isEditing = false;
    bool isDataFileOutdated = false;
    bool wasStopped = false;
};
