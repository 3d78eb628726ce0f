// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/iloomwrightplugin.h"
#include "plugin/pluginexport.h"
#include "plugin/statusmanager.h"

#include <QPointer>

class ExternalUnsignedZorvIngredientManager;
class ExternalUnsignedZorvTargetDetails;

/// The root object of the plug-in for the "Veldmark D1 Phone - Unsigned Zorv".
///
/// Creates and owns the target-details widget and both managers, and passes their messages and the
/// data-file event on to the host's StatusManager.
class ExternalUnsignedZorv : public QObject, public ILoomwrightPlugin
{
    Q_OBJECT
    Q_INTERFACES(ILoomwrightPlugin)
    ZORV_PLUGIN_METADATA(ILoomwrightPlugin_iid)

public:
    /// Creates the target-details widget and both managers.
    explicit ExternalUnsignedZorv(QObject *parent = nullptr);
    ~ExternalUnsignedZorv() override;

    /// @name What ILoomwrightPlugin promises
    /// @{

    /// See ILoomwrightPlugin.
    QString getAuthor() override;
    IIngredientManager *getIngredientManager() override;
    IExecutionManager *getExecutionManager() override;
    QStringList getTargetAPIVersions() override;
    QWidget *getTargetDetailsWidget() override;
    QString getTargetName() override;
    QString getPluginVersion() override;
    /// Also greets through @p manager; a manager that the host deletes counts as switched off.
    void registerStatusManager(StatusManager *manager) override;

    /// @}

public slots:
    /// Passes @p message on as a status message, if a relay is registered.
    void statusMessage(const QString &message);
    /// Passes @p message on as an error message, if a relay is registered.
    void errorMessage(const QString &message);
    /// Passes the event on, if a relay is registered.
    void dataFileChanged();

private:
    QPointer<StatusManager> statusManager;
    QStringList targetAPIVersions;
    ExternalUnsignedZorvIngredientManager *ingredientManager;
    IExecutionManager *executionManager;
    /// Guarded: a host may give the page to a window of its own, which then deletes it.
    QPointer<ExternalUnsignedZorvTargetDetails> targetDetailsWidget;
};
