// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"
#include "plugin/vendorprefix.h"

#include <QObject>
#include <QString>

class QAbstractItemModel;

/// The plug-in's side of a build: the checks before it and the run of the stitcher.
///
/// The host calls through the virtual table: the order of the operations must not change.
class IExecutionManager
{
public:
    /// The plug-in deletes its managers; hosts do not.
    virtual ~IExecutionManager() { }

    /// Writes the configuration and starts the stitcher; returns at once. Failures are reported
    /// through StatusManager::errorMessage(). The stitcher's output arrives as messages while the
    /// event loop runs; its end is not reported.
    virtual void beginExecution() = 0;
    /// Requests the end of a run. The plug-in may ignore it: a host that must stop the stitcher has
    /// to terminate the process itself.
    virtual void cancelExecution() = 0;
    /// The table of check results, the same object every time; owned by the plug-in.
    virtual QAbstractItemModel *getIngredientChecks() = 0;
    /// The counts of the last verifyInputs().
    virtual CheckResultSummary getIngredientCheckSummary() = 0;
    /// The directory in which the stitcher was started; before that the one that was set, or empty
    /// for the host's current directory.
    virtual QString getWorkingDirectory() = 0;
    /// Sets the working directory; beginExecution() may replace it.
    virtual void setWorkingDirectory(const QString &directory) = 0;
    /// Checks all files and fills the check table; true when every check passed.
    virtual bool verifyInputs() = 0;
};

/// The identifier that qobject_cast compares; see vendorprefix.h.
#define IExecutionManager_iid LOOMWRIGHT_VENDOR_PREFIX ".plugin.tamblin.IExecutionManager/1.0"
Q_DECLARE_INTERFACE(IExecutionManager, IExecutionManager_iid)
