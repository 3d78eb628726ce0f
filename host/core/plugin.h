// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/statusmanager.h"

#include <QPluginLoader>
#include <QScopedValueRollback>
#include <QStringList>

class IExecutionManager;
class IIngredientManager;
class ILoomwrightPlugin;
class QAbstractItemModel;

/// A loaded plug-in, with what it reports as signals.
///
/// Connect to the signals before load() to receive the plug-in's greeting.
class Plugin : public QObject
{
    Q_OBJECT

public:
    /// Creates an object without a library.
    explicit Plugin(QObject *parent = nullptr);
    /// Deletes the root object, which kills a stitcher that is still running.
    ~Plugin() override;

    /// Loads the first of @p candidates that exists and registers the relay with it. On failure
    /// returns false, and problem() says why.
    bool load(const QStringList &candidates);
    /// Deletes the plug-in's root object and gets a new one from the library, with default values
    /// and no data; everything obtained from the plug-in before becomes invalid. False, with a
    /// problem(), when there is none; then no plug-in is loaded any more.
    bool renew();
    /// Whether there is a root object.
    bool isLoaded() const;
    /// Why load() or renew() failed, in a sentence for the user.
    QString problem() const;

    /// The file that was loaded.
    QString fileName() const;
    /// The plug-in's root object; owned by the library, null before load() succeeded.
    ILoomwrightPlugin *root() const;
    /// Owned by the plug-in, which must be loaded.
    IIngredientManager *ingredientManager() const;
    /// Owned by the plug-in, which must be loaded.
    IExecutionManager *executionManager() const;
    /// The ingredient tree, owned by the plug-in, which must be loaded.
    QAbstractItemModel *model() const;

    /// Drops the plug-in's messages, which were shown before, while the returned object exists.
    [[nodiscard]] QScopedValueRollback<bool> silence();

signals:
    /// A status message of the plug-in, or the stitcher's standard output.
    void statusMessage(const QString &message);
    /// An error of the plug-in, or the stitcher's standard error.
    void errorMessage(const QString &message);
    /// A data file was loaded: the data views have been replaced.
    void dataFileChanged();
    /// The plug-in's objects are about to be replaced.
    void aboutToRenew();
    /// The plug-in's objects have been replaced.
    void renewed();

private:
    bool fail(const QString &reason);
    bool checkFile(const QString &file);
    bool instantiate();
    bool adoptRoot();

    StatusManager relay;
    QPluginLoader loader;
    QString problemText;
    ILoomwrightPlugin *rootObject = nullptr;
    bool isSilent = false;
};
