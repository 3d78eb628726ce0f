// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/ingredientcheckmodel.h"
#include "plugin/iexecutionmanager.h"

#include <QProcess>

class ExternalUnsignedZorvIngredientManager;

/// Checks the input files before a build and runs the command-line stitcher.
///
/// The stitcher's output is relayed chunk by chunk: standard output as status messages, standard
/// error as error messages. Its end is not reported.
class ExternalUnsignedZorvExecutionManager : public QObject, public IExecutionManager
{
    Q_OBJECT
    Q_INTERFACES(IExecutionManager)

public:
    /// @param manager provides the ingredients; not owned. Once it is deleted, verifyInputs() and
    /// beginExecution() must not be called.
    explicit ExternalUnsignedZorvExecutionManager(ExternalUnsignedZorvIngredientManager *manager);
    ~ExternalUnsignedZorvExecutionManager() override;

    /// Writes "config.txt" in the temporary directory and starts "tamblin-stitcher" there, without
    /// checking the inputs first. While the stitcher runs, "config.txt" is written but nothing is
    /// started.
    void beginExecution() override;
    /// Emits a status message and does nothing else: the stitcher continues to run.
    void cancelExecution() override;
    IngredientCheckModel *getIngredientChecks() override;
    CheckResultSummary getIngredientCheckSummary() override;
    /// The temporary directory once beginExecution() has started the stitcher; before that the one
    /// that was set, or empty.
    QString getWorkingDirectory() override;
    /// Has no effect on the stitcher: beginExecution() sets the temporary directory.
    void setWorkingDirectory(const QString &directory) override;
    bool verifyInputs() override;

signals:
    /// Progress, or a chunk of the stitcher's standard output.
    void statusMessage(QString message);
    /// Why the stitcher could not be started or crashed, or a chunk of its standard error.
    void errorMessage(QString message);
    /// Declared for the host; never emitted.
    void executionFinished();

public slots:
    /// Emits everything that has arrived on standard output as one status message.
    void processStandardOut();
    /// Emits everything that has arrived on standard error as one error message.
    void processStandardError();
    /// Emits a description of @p error as an error message.
    void processCommandLineError(QProcess::ProcessError error);

private:
    void createProcess();
    void startStitcher(const QString &legacyDataFile, const QString &configFile);
    void replaceProcess();

    QProcess *process;
    QString launchDirectory;
    ExternalUnsignedZorvIngredientManager *ingredientManager;
    IngredientCheckModel *checkModel;
};
