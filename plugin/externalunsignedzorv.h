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
/// Owns the target-details widget and both managers, and relays the managers' messages and the
/// data-file event to the host's StatusManager.
class ExternalUnsignedZorv : public QObject, public ILoomwrightPlugin
{
    Q_OBJECT
    Q_INTERFACES(ILoomwrightPlugin)
    ZORV_PLUGIN_METADATA(ILoomwrightPlugin_iid)

public:
    /// Creates the target-details widget and both managers.
    explicit ExternalUnsignedZorv(QObject *parent = nullptr);
    ~ExternalUnsignedZorv() override;

    /// @name ILoomwrightPlugin
    /// @{

    /// See ILoomwrightPlugin.
    QString getAuthor() override;
    IIngredientManager *getIngredientManager() override;
    IExecutionManager *getExecutionManager() override;
    QStringList getTargetAPIVersions() override;
    QWidget *getTargetDetailsWidget() override;
    QString getTargetName() override;
    QString getPluginVersion() override;
    /// Also sends a greeting through @p manager. Relaying ends when the host deletes @p manager.
    void registerStatusManager(StatusManager *manager) override;

    /// @}

public slots:
    /// Relays @p message to the host as a status message, if a StatusManager is registered.
    void statusMessage(const QString &message);
    /// Relays @p message to the host as an error message, if a StatusManager is registered.
    void errorMessage(const QString &message);
    /// Relays the event to the host, if a StatusManager is registered.
    void dataFileChanged();

private:
    QPointer<StatusManager> statusManager;
    QStringList targetAPIVersions;
    ExternalUnsignedZorvIngredientManager *ingredientManager;
    IExecutionManager *executionManager;
    /// A QPointer, since a host may reparent the widget to a window that deletes it.
    QPointer<ExternalUnsignedZorvTargetDetails> targetDetailsWidget;
};
