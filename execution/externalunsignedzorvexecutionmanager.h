// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/ingredientcheckmodel.h"
#include "plugin/iexecutionmanager.h"

#include <QProcess>

class ExternalUnsignedZorvIngredientManager;

/// Checks the input files before a build and runs the command-line stitcher.
///
/// The stitcher's output is relayed chunk by chunk, standard output as status and standard error as
/// error messages. Its end is not announced: executionFinished() is declared for the host and never
/// emitted.
class ExternalUnsignedZorvExecutionManager : public QObject, public IExecutionManager
{
    Q_OBJECT
    Q_INTERFACES(IExecutionManager)

public:
    /// Works on the ingredients of @p manager, which is not taken over and may go first.
    explicit ExternalUnsignedZorvExecutionManager(ExternalUnsignedZorvIngredientManager *manager);
    ~ExternalUnsignedZorvExecutionManager() override;

    /// Writes "config.txt" in the temporary folder and starts "tamblin-stitcher" there. The inputs
    /// are not checked first. While a run is on, the new start is refused and that run goes on.
    void beginExecution() override;
    /// Only says that it was called: a run goes on to its end.
    void cancelExecution() override;
    IngredientCheckModel *getIngredientChecks() override;
    CheckResultSummary getIngredientCheckSummary() override;
    /// The temporary directory after a run has begun; before that what was set.
    QString getWorkingDirectory() override;
    /// Does not reach the stitcher: beginExecution() sets the temporary folder.
    void setWorkingDirectory(const QString &directory) override;
    bool verifyInputs() override;

signals:
    /// Progress, and a chunk of the stitcher's standard output.
    void statusMessage(QString message);
    /// Why a run could not start or broke off, and a chunk of the stitcher's standard error.
    void errorMessage(QString message);
    /// Never emitted.
    void executionFinished();

public slots:
    /// Sends all that has arrived on standard output as one status message.
    void processStandardOut();
    /// Sends all that has arrived on standard error as one error message.
    void processStandardError();
    /// Sends Qt's description of @p error as an error message.
    void processCommandLineError(QProcess::ProcessError error);

private:
    void startStitcher(const QString &legacyDataFile, const QString &configFile);

    QProcess process;
    QString launchDirectory;
    ExternalUnsignedZorvIngredientManager *ingredientManager;
    IngredientCheckModel *checkModel;
};
