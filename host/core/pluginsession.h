// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/statusmanager.h"

#include <QPluginLoader>
#include <QStringList>

class IExecutionManager;
class IIngredientManager;
class ILoomwrightPlugin;

/// A loaded plug-in and the relay through which it reports.
///
/// Connect to statusManager() before load() to receive the plug-in's greeting.
class PluginSession : public QObject
{
    Q_OBJECT

public:
    /// Creates a session without a plug-in.
    explicit PluginSession(QObject *parent = nullptr);
    /// Deletes the plug-in, which kills a stitcher that is still running.
    ~PluginSession() override;

    /// Loads the first of @p candidates that exists and registers the relay with it. On failure
    /// returns false, and problem() says why.
    bool load(const QStringList &candidates);
    /// Deletes the plug-in's root object and gets a new one from the library, with default values
    /// and no data; everything obtained from the plug-in before becomes invalid. False, with a
    /// problem(), when there is none.
    bool reload();
    /// Why load() or reload() failed, in a sentence for the user.
    QString problem() const;

    /// The file that was loaded.
    QString fileName() const;
    /// The relay, which exists before a plug-in is loaded; owned by this object.
    StatusManager *statusManager();
    /// The plug-in's root object; owned by the library, null before load() succeeded.
    ILoomwrightPlugin *plugin() const;
    /// Owned by the plug-in; null before load() succeeded.
    IIngredientManager *ingredientManager() const;
    /// Owned by the plug-in; null before load() succeeded.
    IExecutionManager *executionManager() const;

signals:
    /// The plug-in's objects have been replaced.
    void reloaded();

private:
    bool fail(const QString &reason);
    bool checkFile(const QString &file);
    bool instantiate();
    bool adoptRoot();

    StatusManager relay;
    QPluginLoader loader;
    QString problemText;
    ILoomwrightPlugin *loadedPlugin = nullptr;
    IIngredientManager *ingredients = nullptr;
    IExecutionManager *execution = nullptr;
};
