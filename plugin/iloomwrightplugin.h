// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/vendorprefix.h"

#include <QObject>
#include <QString>
#include <QStringList>

class IExecutionManager;
class IIngredientManager;
class QWidget;
class StatusManager;

/// The root interface of a target plug-in: what the host asks the loaded library for.
///
/// The plug-in owns everything that the getters return, and deletes it with its root object.
/// The host calls through the virtual table: the order of the operations must not change.
class ILoomwrightPlugin
{
public:
    /// The plug-in loader deletes the root object.
    virtual ~ILoomwrightPlugin() { }

    /// Author's name, followed by a contact address.
    virtual QString getAuthor() = 0;
    /// What goes into an image: the same object every time; null when there is none.
    virtual IIngredientManager *getIngredientManager() = 0;
    /// The checks and the run of the stitcher: the same object every time; null when there is none.
    virtual IExecutionManager *getExecutionManager() = 0;
    /// The host interface versions that the plug-in supports.
    virtual QStringList getTargetAPIVersions() = 0;
    /// The widget for the host's target-details page.
    virtual QWidget *getTargetDetailsWidget() = 0;
    /// Display name of the target platform.
    virtual QString getTargetName() = 0;
    /// Version of the plug-in itself, for the user.
    virtual QString getPluginVersion() = 0;
    /// Sets the relay for all messages and events, which the host owns; null switches relaying off.
    /// Messages before the first call are dropped.
    virtual void registerStatusManager(StatusManager *manager) = 0;
};

/// The identifier that qobject_cast compares; see vendorprefix.h.
#define ILoomwrightPlugin_iid LOOMWRIGHT_VENDOR_PREFIX ".plugin.tamblin.ILoomwrightPlugin/1.0"
Q_DECLARE_INTERFACE(ILoomwrightPlugin, ILoomwrightPlugin_iid)
