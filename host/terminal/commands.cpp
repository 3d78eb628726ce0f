// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/commands.h"

#include "host/core/buildrunner.h"
#include "host/core/ingredients.h"
#include "host/core/pluginsession.h"
#include "host/core/stitcherlocator.h"
#include "host/terminal/commandline.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/interruptwatch.h"
#include "host/terminal/report.h"
#include "model/choice.h"
#include "model/filepath.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

/// One run of the program with a loaded plug-in.
class Commands
{
public:
    Commands(const CommandLine &wanted, PluginSession *pluginSession, Report *output)
        : commandLine(wanted)
        , session(pluginSession)
        , report(output)
        , ingredients(pluginSession->ingredientManager())
        , execution(pluginSession->executionManager())
    {
    }

    int run();

private:
    bool applyInputs();
    int info();
    int listIngredients();
    int check();
    int validate();
    int config();
    int build();

    bool runChecks();
    bool writeConfig(const QString &file);
    BuildResult stitch();
    /// Failed when an input was refused or the plug-in has sent an error, else AllWell.
    int statusSoFar() const;

    const CommandLine &commandLine;
    PluginSession *session;
    Report *report;
    IIngredientManager *ingredients;
    IExecutionManager *execution;
    bool areInputsApplied = false;
};

QJsonObject toJson(const Ingredient &ingredient)
{
    QJsonObject object{{QStringLiteral("group"), ingredient.group},
                       {QStringLiteral("name"), ingredient.name},
                       {QStringLiteral("key"), ingredient.key},
                       {QStringLiteral("value"), textOf(ingredient.value)},
                       {QStringLiteral("visible"), ingredient.isVisible}};
    switch (kindOf(ingredient.value)) {
    case ValueKind::File: {
        const auto file = ingredient.value.value<FilePath>();
        object.insert(QStringLiteral("kind"), QStringLiteral("file"));
        object.insert(QStringLiteral("input"), file.isInput);
        object.insert(QStringLiteral("required"), file.isRequired);
        object.insert(QStringLiteral("exactSize"),
                      file.exactSize > 0 ? QJsonValue(file.exactSize) : QJsonValue());
        object.insert(QStringLiteral("filter"), file.fileFilter);
        break;
    }
    case ValueKind::Choice:
        object.insert(QStringLiteral("kind"), QStringLiteral("choice"));
        object.insert(QStringLiteral("choices"),
                      QJsonArray::fromStringList(ingredient.value.value<Choice>().choices));
        break;
    case ValueKind::Text:
        object.insert(QStringLiteral("kind"), QStringLiteral("text"));
        break;
    case ValueKind::Other:
        object.insert(QStringLiteral("kind"), QStringLiteral("other"));
        break;
    }
    return object;
}

/// The file that a check looked at, and its size where that is not the demanded one.
QString checkedFile(const Ingredient &ingredient)
{
    const auto file = ingredient.value.value<FilePath>();
    const QFileInfo found(file.fileName);
    if (file.isInput && file.exactSize > 0 && found.exists() && found.size() != file.exactSize) {
        return QStringLiteral("%1 (has %2, must have %3)")
            .arg(file.fileName, sizeText(found.size()), sizeText(file.exactSize));
    }
    return file.fileName;
}

int Commands::run()
{
    areInputsApplied = applyInputs();

    const QHash<QString, int (Commands::*)()> commands{
        {QStringLiteral("info"), &Commands::info},
        {QStringLiteral("ingredients"), &Commands::listIngredients},
        {QStringLiteral("check"), &Commands::check},
        {QStringLiteral("validate"), &Commands::validate},
        {QStringLiteral("config"), &Commands::config},
        {QStringLiteral("build"), &Commands::build}};
    return (this->*commands.value(commandLine.command))();
}

/// Applies every input, the later ones also when an earlier one was refused, so that one run tells
/// all that is wrong.
bool Commands::applyInputs()
{
    const QDir current = QDir::current();
    bool isApplied = true;
    if (!commandLine.configInput.isEmpty()) {
        isApplied = ingredients->loadConfigFromFile(commandLine.configInput) && isApplied;
    }
    // Absolute, since the stitcher will look for the files from another folder.
    if (!commandLine.directory.isEmpty()) {
        isApplied = ingredients->generateConfigFromDirectory(
                        current.absoluteFilePath(commandLine.directory))
            && isApplied;
    }
    for (const QString &file : commandLine.files) {
        isApplied = ingredients->loadIngredientFile(current.absoluteFilePath(file)) && isApplied;
    }
    for (const auto &setting : commandLine.settings) {
        const QString problem
            = setIngredientValue(ingredients->getIngredients(), setting.first, setting.second);
        if (!problem.isEmpty()) {
            report->addProblem(problem);
            isApplied = false;
        }
    }
    return isApplied;
}

int Commands::statusSoFar() const
{
    return areInputsApplied && report->errorCount() == 0 ? AllWell : Failed;
}

int Commands::info()
{
    ILoomwrightPlugin *plugin = session->plugin();
    const QStringList versions = plugin->getTargetAPIVersions();
    report->print(Table{{QStringLiteral("Target"), plugin->getTargetName()},
                        {{QStringLiteral("Version"), plugin->getPluginVersion()},
                         {QStringLiteral("Author"), plugin->getAuthor()},
                         {QStringLiteral("Host interface"), versions.join(QStringLiteral(", "))},
                         {QStringLiteral("Identifier"), QStringLiteral(ILoomwrightPlugin_iid)},
                         {QStringLiteral("Qt"), QLatin1String(qVersion())},
                         {QStringLiteral("File"), session->fileName()}}});
    report->set(QStringLiteral("target"), plugin->getTargetName());
    report->set(QStringLiteral("version"), plugin->getPluginVersion());
    report->set(QStringLiteral("author"), plugin->getAuthor());
    report->set(QStringLiteral("hostInterfaces"), QJsonArray::fromStringList(versions));
    report->set(QStringLiteral("identifier"), QStringLiteral(ILoomwrightPlugin_iid));
    report->set(QStringLiteral("qt"), QLatin1String(qVersion()));
    report->set(QStringLiteral("file"), session->fileName());
    return statusSoFar();
}

int Commands::listIngredients()
{
    Table table{{QStringLiteral("Group"), QStringLiteral("Ingredient"), QStringLiteral("Key"),
                 QStringLiteral("Value"), QStringLiteral("Must be")},
                {}};
    QJsonArray objects;
    for (const Ingredient &ingredient : ingredientsOf(*ingredients->getIngredients())) {
        table.rows.append({ingredient.group, ingredient.name, ingredient.key,
                           textOf(ingredient.value), demandOf(ingredient.value)});
        objects.append(toJson(ingredient));
    }
    report->print(table);
    report->set(QStringLiteral("ingredients"), objects);
    return statusSoFar();
}

/// Checks all files and shows the table; true when every check passed.
bool Commands::runChecks()
{
    const bool isPassed = execution->verifyInputs();

    QHash<QString, QString> files;
    for (const Ingredient &ingredient : ingredientsOf(*ingredients->getIngredients())) {
        if (kindOf(ingredient.value) == ValueKind::File) {
            files.insert(ingredient.name, checkedFile(ingredient));
        }
    }
    Table table{{QStringLiteral("Result"), QStringLiteral("Ingredient"), QStringLiteral("Details"),
                 QStringLiteral("File")},
                {}};
    QJsonArray objects;
    const QAbstractItemModel &checks = *execution->getIngredientChecks();
    for (int row = 0; row < checks.rowCount(); ++row) {
        const bool isRowPassed = checks.index(row, 0).data().toBool();
        const QString name = checks.index(row, 1).data().toString();
        const QString details = checks.index(row, 2).data().toString();
        table.rows.append({isRowPassed ? report->good(QStringLiteral("pass"))
                                       : report->bad(QStringLiteral("FAIL")),
                           name, details, files.value(name)});
        objects.append(QJsonObject{{QStringLiteral("passed"), isRowPassed},
                                   {QStringLiteral("ingredient"), name},
                                   {QStringLiteral("details"), details},
                                   {QStringLiteral("file"), files.value(name)}});
    }
    const CheckResultSummary summary = execution->getIngredientCheckSummary();
    report->print(table);
    report->print(QStringLiteral("%1 checks: %2 passed, %3 failed")
                      .arg(summary.checkCount)
                      .arg(summary.passCount)
                      .arg(summary.failCount));
    report->set(QStringLiteral("checks"), objects);
    report->set(QStringLiteral("summary"),
                QJsonObject{{QStringLiteral("checks"), summary.checkCount},
                            {QStringLiteral("passed"), summary.passCount},
                            {QStringLiteral("failed"), summary.failCount}});
    return isPassed;
}

int Commands::check()
{
    return runChecks() ? statusSoFar() : Failed;
}

int Commands::validate()
{
    const bool isSound = ingredients->validateXmlFile(commandLine.validateFile);
    report->print(isSound ? report->good(QStringLiteral("The file is sound."))
                          : report->bad(QStringLiteral("The file is not sound.")));
    report->set(QStringLiteral("sound"), isSound);
    return isSound ? statusSoFar() : Failed;
}

bool Commands::writeConfig(const QString &file)
{
    if (!ingredients->saveConfigToFile(file)) {
        return false;
    }
    report->print(QStringLiteral("Configuration written to %1").arg(file));
    report->set(QStringLiteral("configFile"), file);
    return true;
}

int Commands::config()
{
    if (!areInputsApplied) {
        report->addProblem(QStringLiteral("No configuration is written: an input was refused."));
        return Failed;
    }
    if (!commandLine.outputFile.isEmpty()) {
        return writeConfig(QDir::current().absoluteFilePath(commandLine.outputFile)) ? statusSoFar()
                                                                                     : Failed;
    }
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("config.txt")));
    if (!ingredients->saveConfigToFile(file.fileName()) || !file.open(QIODevice::ReadOnly)) {
        return Failed;
    }
    const QByteArray text = file.readAll();
    report->printRaw(text);
    report->set(QStringLiteral("config"), QString::fromLocal8Bit(text));
    return statusSoFar();
}

int Commands::build()
{
    QAbstractItemModel *model = ingredients->getIngredients();
    if (!commandLine.outputFile.isEmpty()) {
        const QString problem
            = setIngredientValue(model, outputIngredient(*model).name, commandLine.outputFile);
        if (!problem.isEmpty()) {
            report->addProblem(problem);
            areInputsApplied = false;
        }
    }
    const bool isSound = !commandLine.isChecked || (runChecks() && report->errorCount() == 0);
    if (!areInputsApplied || !isSound) {
        report->addProblem(areInputsApplied
                               ? QStringLiteral("Nothing is stitched: see the failures above; "
                                                "--no-check stitches all the same.")
                               : QStringLiteral("Nothing is stitched: an input was refused."));
        return Failed;
    }

    const BuildResult result = stitch();
    report->set(QStringLiteral("image"), result.imageFile);
    report->set(QStringLiteral("elapsedMs"), result.elapsedMs);
    if (!result.isSuccess) {
        report->addProblem(QStringLiteral("The build failed. ") + result.reason);
        return Failed;
    }
    report->set(QStringLiteral("size"), result.imageSize);
    report->set(QStringLiteral("sha256"), QLatin1String(result.sha256));
    report->print(
        Table{{QStringLiteral("Image"), result.imageFile},
              {{QStringLiteral("Size"), sizeText(result.imageSize)},
               {QStringLiteral("SHA-256"), QLatin1String(result.sha256)},
               {QStringLiteral("Time"),
                QStringLiteral("%1 s").arg(double(result.elapsedMs) / 1000, 0, 'f', 2)}}});
    return AllWell;
}

BuildResult Commands::stitch()
{
    BuildResult result;
    const StitcherLocation stitcher = locateStitcher(QString());
    if (stitcher.file.isEmpty()) {
        result.reason = stitcher.problem;
        return result;
    }
    BuildRunner runner(session);
    QEventLoop loop;
    QObject::connect(&runner, &BuildRunner::finished, &loop, [&](const BuildResult &finished) {
        result = finished;
        loop.quit();
    });
    InterruptWatch interrupts;
    QObject::connect(&interrupts, &InterruptWatch::interrupted, &runner,
                     [&runner] { runner.stop(QStringLiteral("It was interrupted.")); });
    BuildOptions options;
    options.stitcher = stitcher.file;
    options.timeoutMs = commandLine.timeoutMs;
    runner.start(options);
    loop.exec();
    return result;
}

} // namespace

int runCommand(const CommandLine &commandLine, PluginSession *session, Report *report)
{
    return Commands(commandLine, session, report).run();
}
