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

/// What a window works on: a plug-in with the values of an image, what is wrong with them, the
/// project file that they are kept in, and the builds.
///
/// Everything is checked again after every change, also of a file on disk. The plug-in verifies
/// again what it has verified before whenever it loads a data file, so such a file is loaded into a
/// fresh root object, which takes over the other values.
///
/// Without a plug-in, and while a build runs, the operations that change values do nothing.
class ImageSession : public QObject
{
    Q_OBJECT

public:
    /// A session without a plug-in; see loadPlugin().
    explicit ImageSession(QObject *parent = nullptr);
    ~ImageSession() override;

    /// Loads the first of @p candidates that exists, in place of the current plug-in. On failure
    /// that one stays, and pluginProblem() says why.
    bool loadPlugin(const QStringList &candidates);
    /// Why there is no plug-in or the last one could not be loaded.
    QString pluginProblem() const;
    /// Whether there is a plug-in.
    bool isLoaded() const;
    /// The plug-in; null when there is none. It is replaced between pluginAboutToChange() and
    /// pluginChanged().
    ILoomwrightPlugin *plugin() const;
    /// The file of the plug-in.
    QString pluginFile() const;

    /// Takes directories, files, configurations and project files in, each as what it is.
    void open(const QStringList &paths);
    /// Fills ingredients again from the directories that were opened last; values that were chosen
    /// among several candidates stay.
    void rescan();
    /// Sets one value, a path taken against the current directory. An empty text clears it.
    void setValue(const QString &name, const QString &key, const QString &text);
    /// Sets all values back to what they were, for undo and redo; valuesChanged() is not emitted.
    void restore(const Project &values);

    /// Puts the values of @p file in the place of the present ones. A manifest is taken as well, but
    /// is no project file to be saved.
    bool openProject(const QString &file);
    /// Writes the values; problems are reported by noticed().
    bool saveProject(const QString &file);
    /// Writes a stitcher configuration and reports what it does not hold by noticed().
    bool saveConfiguration(const QString &file);
    /// The project file that was opened or saved last; empty when there is none.
    QString projectFile() const;
    /// Whether the values differ from those of the project file, or from the plug-in's own.
    bool isModified() const;

    /// The current values.
    Project values() const;
    /// All ingredients in tree order; empty without a plug-in.
    QVector<Ingredient> ingredients() const;
    /// All that is wrong, as of the last check; of an ingredient with very many errors the first.
    QVector<Problem> problems() const;
    /// The files that may be the value of an ingredient, when several were found; else empty.
    QStringList candidates(const QString &name, const QString &key) const;
    /// Checks at once, where a changed value would be checked as soon as the event loop runs.
    void check();
    /// Puts off what would replace the ingredients' model while a value is being edited.
    void setEditing(bool newEditing);

    /// Starts a build; buildFinished() follows.
    void build(const BuildOptions &options);
    /// Terminates the stitcher, or stops hashing the image; buildFinished() follows.
    void stopBuild();
    /// Whether a build is running.
    bool isBuilding() const;
    /// Whether the last build was ended by stopBuild().
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
    /// A data file was loaded: the data views are new.
    void dataFileChanged();
    /// Everything that was got from plugin() becomes invalid.
    void pluginAboutToChange();
    /// plugin() returns a new object, or null.
    void pluginChanged();

    /// A longer operation begins or has ended.
    void busyChanged(bool isBusy);
    /// Something that belongs to no ingredient and is to be shown once.
    void noticed(const QString &text);
    /// The user has changed values by what @p text names.
    void valuesChanged(const QString &text, const Project &before, const Project &after);
    /// Another project was opened, or another plug-in loaded: the values before are gone.
    void projectOpened();
    /// projectFile() or isModified() may have changed.
    void projectChanged();
    /// Values, problems, files or the state of the build have changed, and have been checked.
    void changed();

    /// A build has started.
    void buildStarted();
    /// The image is being hashed: @p done of @p total bytes.
    void hashing(qint64 done, qint64 total);
    /// The build has ended as @p result says.
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
    QStringList inputFiles() const;
    QString imageFile() const;

    std::unique_ptr<PluginSession> session;
    std::unique_ptr<ImageJob> job;
    std::unique_ptr<BuildRunner> runner;
    QString problemText;
    FileWatcher watcher;
    QTimer checkTimer;
    QVector<Problem> currentProblems;
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
