// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/externalunsignedzorvexecutionmanager.h"

#include "execution/processlimits.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "manager/standardlocations.h"
#include "model/ingredientmodel.h"
#include "model/ingredientnames.h"

#include <QDir>

#include <algorithm>

namespace {

/// Started by this bare name, so that it is found through the search path.
const QLatin1String stitcherProgram("tamblin-stitcher");

/// The text for @p error; null for a value that has none.
const char *textOf(QProcess::ProcessError error)
{
    switch (error) {
    case QProcess::FailedToStart:
        return "The process failed to start. Either the invoked program is missing, or you may "
               "have insufficient permissions to invoke the program.";
    case QProcess::Crashed:
        return "The process crashed some time after starting successfully.";
    case QProcess::Timedout:
        return "The last waitFor...() function timed out. The state of QProcess is unchanged, and "
               "you can try calling waitFor...() again.";
    case QProcess::ReadError:
        return "An error occurred when attempting to read from the process. For example, the "
               "process may not be running.";
    case QProcess::WriteError:
        return "An error occurred when attempting to write to the process. For example, the "
               "process may not be running, or it may have closed its input channel.";
    case QProcess::UnknownError:
        return "An unknown error occurred. This is the default return value of error().";
    }
    return nullptr;
}

/// The text of @p output up to its first NUL byte.
QString toText(const QByteArray &output)
{
    return QString::fromLocal8Bit(output.constData());
}

} // namespace

ExternalUnsignedZorvExecutionManager::ExternalUnsignedZorvExecutionManager(
    ExternalUnsignedZorvIngredientManager *manager)
    : process(nullptr)
    , ingredientManager(manager)
    , checkModel(new IngredientCheckModel)
{
    createProcess();
    launchDirectory = process->workingDirectory();
}

ExternalUnsignedZorvExecutionManager::~ExternalUnsignedZorvExecutionManager()
{
    delete checkModel;
    delete process;
}

void ExternalUnsignedZorvExecutionManager::createProcess()
{
    process = new QProcess;
    connect(process, SIGNAL(readyReadStandardError()), SLOT(processStandardError()));
    connect(process, SIGNAL(readyReadStandardOutput()), SLOT(processStandardOut()));
    connect(process, SIGNAL(error(QProcess::ProcessError)),
            SLOT(processCommandLineError(QProcess::ProcessError)));
}

bool ExternalUnsignedZorvExecutionManager::verifyInputs()
{
    IngredientModel *model = ingredientManager->getIngredients();
    if (!model) {
        return false;
    }
    // The result is that of this call: a slot connected to the table may call this function again.
    const QList<CheckResult> results = model->checkAllFiles();
    checkModel->setData(results);
    return std::all_of(results.begin(), results.end(),
                       [](const CheckResult &result) { return result.passed; });
}

void ExternalUnsignedZorvExecutionManager::beginExecution()
{
    IngredientModel *model = ingredientManager->getIngredients();
    if (!model) {
        return;
    }
    const QString legacyDataFile = model->getIngredient(legacyDataFileIngredient, valueColumnTitle);
    emit statusMessage(QString::fromLatin1("Platform XML file returned from getIngredient is %1")
                           .arg(legacyDataFile));

    const QString temporaryPath = temporaryLocation();
    if (temporaryPath.isEmpty()) {
        emit errorMessage(QLatin1String("Could not determine temp file location"));
        return;
    }
    const QDir temporaryDirectory(temporaryPath);
    if (!temporaryDirectory.exists()) {
        temporaryDirectory.mkdir(temporaryPath);
    }
    const QString configFile = temporaryDirectory.absoluteFilePath(QLatin1String("config.txt"));
    if (!ingredientManager->saveConfigToFile(configFile)) {
        emit errorMessage(QString::fromLatin1("Failed to save Config file to %1").arg(configFile));
        return;
    }
    emit statusMessage(QString::fromLatin1("Saved Config file to %1").arg(configFile));

    process->setWorkingDirectory(temporaryDirectory.absolutePath());
    startStitcher(legacyDataFile, configFile);
}

void ExternalUnsignedZorvExecutionManager::startStitcher(const QString &legacyDataFile,
                                                         const QString &configFile)
{
    const QStringList arguments = QStringList()
        << QLatin1String("-k") << legacyDataFile << QLatin1String("-c") << configFile
        << QLatin1String("-A");
    emit statusMessage(QLatin1String("Running command line stitcher next."));
    emit statusMessage(QLatin1String("Command Line: ")
                       + QDir(launchDirectory).absoluteFilePath(stitcherProgram) + QLatin1Char(' ')
                       + arguments.join(QLatin1String(" ")));
    if (process->state() == QProcess::NotRunning && !hasFreeDescriptors()) {
        processCommandLineError(QProcess::FailedToStart);
        return;
    }
    process->start(stitcherProgram, arguments, QIODevice::ReadWrite);
    if (hasFailedToFork(*process)) {
        replaceProcess();
        processCommandLineError(QProcess::FailedToStart);
    }
}

/// Replaces a process that must never be deleted, as hasFailedToFork() describes.
void ExternalUnsignedZorvExecutionManager::replaceProcess()
{
    const QString directory = process->workingDirectory();
    abandon(process);
    createProcess();
    process->setWorkingDirectory(directory);
}

void ExternalUnsignedZorvExecutionManager::cancelExecution()
{
    emit statusMessage(
        QLatin1String("Inside ExternalUnsignedZorvExecutionManager::cancelExecution()"));
}

IngredientCheckModel *ExternalUnsignedZorvExecutionManager::getIngredientChecks()
{
    return checkModel;
}

CheckResultSummary ExternalUnsignedZorvExecutionManager::getIngredientCheckSummary()
{
    return checkModel->checkResultSummary();
}

QString ExternalUnsignedZorvExecutionManager::getWorkingDirectory()
{
    return process->workingDirectory();
}

void ExternalUnsignedZorvExecutionManager::setWorkingDirectory(const QString &directory)
{
    process->setWorkingDirectory(directory);
}

void ExternalUnsignedZorvExecutionManager::processStandardOut()
{
    emit statusMessage(toText(process->readAllStandardOutput()));
}

void ExternalUnsignedZorvExecutionManager::processStandardError()
{
    emit errorMessage(toText(process->readAllStandardError()));
}

void ExternalUnsignedZorvExecutionManager::processCommandLineError(QProcess::ProcessError error)
{
    if (const char *text = textOf(error)) {
        emit errorMessage(QLatin1String(text));
    }
}
