// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "plugin/externalunsignedzorv.h"

#include "execution/externalunsignedzorvexecutionmanager.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "plugin/externalunsignedzorvtargetdetails.h"

#include <QCoreApplication>

namespace {

const QLatin1String targetName("Veldmark D1 Phone - Unsigned Zorv");

} // namespace

ExternalUnsignedZorv::ExternalUnsignedZorv(QObject *parent)
    : QObject(parent)
    , targetAPIVersions(QLatin1String("1.0"))
    , ingredientManager(nullptr)
    , executionManager(nullptr)
    , targetDetailsWidget(new ExternalUnsignedZorvTargetDetails(nullptr))
{
    ingredientManager = new ExternalUnsignedZorvIngredientManager;
    ExternalUnsignedZorvExecutionManager *execution
        = new ExternalUnsignedZorvExecutionManager(ingredientManager);
    executionManager = execution;

    connect(ingredientManager, SIGNAL(statusMessage(QString)), SLOT(statusMessage(QString)));
    connect(ingredientManager, SIGNAL(errorMessage(QString)), SLOT(errorMessage(QString)));
    connect(execution, SIGNAL(statusMessage(QString)), SLOT(statusMessage(QString)));
    connect(execution, SIGNAL(errorMessage(QString)), SLOT(errorMessage(QString)));
    connect(ingredientManager, SIGNAL(dataFileLoaded()), SLOT(dataFileChanged()));
}

ExternalUnsignedZorv::~ExternalUnsignedZorv()
{
    targetAPIVersions.clear();
    // The execution manager points to the ingredient manager, but its destructor does not use it.
    delete ingredientManager;
    delete executionManager;
    // Without an application, deleting a widget that was shown crashes. The process is ending.
    if (QCoreApplication::instance()) {
        delete targetDetailsWidget;
    }
}

QString ExternalUnsignedZorv::getAuthor()
{
    return QLatin1String("Loomwright plug-in team <zorv@loomwright.invalid>");
}

IIngredientManager *ExternalUnsignedZorv::getIngredientManager()
{
    return ingredientManager;
}

IExecutionManager *ExternalUnsignedZorv::getExecutionManager()
{
    return executionManager;
}

QStringList ExternalUnsignedZorv::getTargetAPIVersions()
{
    return targetAPIVersions;
}

QWidget *ExternalUnsignedZorv::getTargetDetailsWidget()
{
    return targetDetailsWidget;
}

QString ExternalUnsignedZorv::getTargetName()
{
    return targetName;
}

QString ExternalUnsignedZorv::getPluginVersion()
{
    return QLatin1String("1.0.0");
}

void ExternalUnsignedZorv::registerStatusManager(StatusManager *manager)
{
    statusManager = manager;
    statusMessage(QString::fromLatin1("   Status bridge registered for %1!").arg(targetName));
}

void ExternalUnsignedZorv::statusMessage(const QString &message)
{
    if (statusManager) {
        statusManager->relayStatusMessage(message);
    }
}

void ExternalUnsignedZorv::errorMessage(const QString &message)
{
    if (statusManager) {
        statusManager->relayErrorMessage(message);
    }
}

void ExternalUnsignedZorv::dataFileChanged()
{
    if (statusManager) {
        statusManager->relayDataFileChanged();
    }
}

ZORV_EXPORT_PLUGIN(unsigned_zorv, ExternalUnsignedZorv)
