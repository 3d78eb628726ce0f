// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/filehasher.h"
#include "host/core/imagejob.h"
#include "host/core/manifest.h"
#include "host/core/pluginsession.h"
#include "host/core/projectfile.h"
#include "host/core/signalwatch.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/commandtable.h"
#include "host/terminal/exitstatus.h"

#include <QEventLoop>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

const int copyBufferSize = 1 << 16;

void refuse(CommandContext &context, const QString &text)
{
    Problem problem;
    problem.kind = ProblemKind::Input;
    problem.text = text;
    problem.mustBeFixed = true;
    context.job->addProblem(problem);
}

void addProblems(CommandContext &context, const QVector<Problem> &problems)
{
    for (const Problem &problem : problems) {
        context.job->addProblem(problem);
    }
}

/// Compares the current values with the manifest.
void checkLock(CommandContext &context, const Project &manifest)
{
    if (!manifest.build) {
        refuse(context,
               QStringLiteral("%1 is not a manifest, which --locked needs.")
                   .arg(context.commandLine.projectFile));
        return;
    }
    QVector<RecordedFile> inputs;
    addProblems(context, differencesInValues(manifest, context.job->ingredients(), &inputs));
    noteStates(context, inputFilesOf(context.job->ingredients()));
    QList<FileHash> hashes;
    if (!hashFiles(context, pathsOf(inputs), &hashes)) {
        refuse(context, QStringLiteral("The comparison was interrupted."));
        return;
    }
    addProblems(context, differencesInFiles(inputs, hashes));
}

void loadProject(CommandContext &context, Project *project)
{
    const QString file = context.commandLine.projectFile;
    const QString problem = readProject(file, project);
    if (!problem.isEmpty()) {
        refuse(context, problem);
        return;
    }
    context.job->loadProject(*project, file);
}

void loadConfig(CommandContext &context, const QString &file)
{
    if (file != QLatin1String(standardInputName)) {
        context.job->loadConfig(file);
        return;
    }
    QString copy;
    const QString problem = copyStandardInput(context, &copy);
    if (!problem.isEmpty()) {
        refuse(context, problem);
        return;
    }
    context.job->loadConfig(copy);
}

/// Shows refused inputs and differences; the plug-in's own errors were shown as they arrived.
void printRefusals(CommandContext &context)
{
    const QVector<Problem> problems = context.job->problems();
    for (const Problem &problem : problems) {
        if (problem.kind == ProblemKind::Input) {
            context.report.printError(problem.text);
        } else if (problem.kind == ProblemKind::Difference) {
            context.report.printError(problem.ingredient + QLatin1String(": ") + problem.text
                                      + QLatin1String(": ") + problem.file);
        }
    }
}

/// Gives a new root object only the last data file, since the plug-in verifies the earlier ones again
/// with it. False when there is no new root object.
bool dropReplacedDataFiles(CommandContext &context)
{
    ImageJob &job = *context.job;
    const QVector<Ingredient> ingredients = job.ingredients();
    const QVector<Problem> problems = job.problems();
    context.report.setSource(Report::Source::Repeated);
    if (!job.renewPlugin()) {
        return false;
    }
    for (const Ingredient &old : ingredients) {
        const QString file = textOf(old.value);
        if (!isDataFile(old)) {
            continue;
        }
        if (!file.isEmpty()) {
            job.setValue(findIngredient(job.ingredients(), old.name, old.key), file);
        }
        for (const Problem &problem : problems) {
            const bool own = problem.ingredient == old.name && problem.key == old.key;
            // Not about the content, such as a second candidate.
            if (own && problem.file != file) {
                job.addProblem(problem);
            }
        }
    }
    context.report.setSource(Report::Source::Plugin);
    return true;
}

/// Applies the inputs in their order; @p project is set to that of --project. False when the plug-in
/// cannot be used any more.
bool setInputs(CommandContext &context, Project *project)
{
    const CommandLine &commandLine = context.commandLine;
    ImageJob &job = *context.job;
    int dataFileCount = 0;
    QObject receiver;
    QObject::connect(context.session->statusManager(), &StatusManager::dataFileChanged, &receiver,
                     [&dataFileCount] { ++dataFileCount; });
    if (!commandLine.projectFile.isEmpty()) {
        loadProject(context, project);
    }
    if (!commandLine.configInput.isEmpty() && !context.isInterrupted()) {
        loadConfig(context, commandLine.configInput);
    }
    if (!commandLine.directory.isEmpty() && !context.isInterrupted()) {
        job.fillFromDirectory(commandLine.directory);
    }
    for (const QString &file : commandLine.files) {
        if (!context.isInterrupted()) {
            job.addFile(file);
        }
    }
    for (const auto &setting : commandLine.settings) {
        if (!context.isInterrupted()) {
            job.setValue(setting.first, setting.second);
        }
    }
    if (!commandLine.imageFile.isEmpty()) {
        job.setImage(commandLine.imageFile);
    }
    if (commandLine.command->function == buildImage && !commandLine.outputFile.isEmpty()) {
        job.setImage(commandLine.outputFile);
    }
    return dataFileCount < 2 || context.isInterrupted() || dropReplacedDataFiles(context);
}

/// Appends everything that is read from @p descriptor to @p file. Returns an error number; 0 on
/// success.
int copyContent(const SignalWatch &signalWatch, int descriptor, QFile *file)
{
    QByteArray buffer(copyBufferSize, Qt::Uninitialized);
    while (signalWatch.waitFor(descriptor, POLLIN)) {
        const ssize_t count = read(descriptor, buffer.data(), size_t(buffer.size()));
        if (count == 0) {
            return 0;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            return errno;
        }
        if (count > 0 && file->write(buffer.constData(), count) != count) {
            return ENOSPC;
        }
    }
    return EINTR;
}

} // namespace

bool CommandContext::isInterrupted() const
{
    return signalWatch.hasReceived();
}

bool applyInputs(CommandContext &context)
{
    const CommandLine &commandLine = context.commandLine;
    Project project;
    if (!setInputs(context, &project)) {
        return false;
    }
    if (commandLine.isLocked && !project.target.isEmpty()) {
        checkLock(context, project);
    }
    printRefusals(context);
    return true;
}

void noteStates(CommandContext &context, const QStringList &files)
{
    const FileStates loaded = context.job->loadedStates();
    for (const QString &file : files) {
        if (!context.inputStates.contains(file)) {
            context.inputStates.insert(
                file, loaded.contains(file) ? loaded.value(file) : FileState::of(file));
        }
    }
}

int inputStatus(const CommandContext &context)
{
    const QVector<Problem> problems = context.job->problems();
    const bool wrong = std::any_of(problems.begin(), problems.end(), [](const Problem &problem) {
        return problem.kind != ProblemKind::Check && problem.kind != ProblemKind::Finding;
    });
    return wrong ? Failed : Success;
}

void noteProblems(CommandContext &context)
{
    if (!context.job || context.areProblemsNoted) {
        return;
    }
    context.areProblemsNoted = true;
    const QVector<Problem> problems = context.job->problems();
    for (const Problem &problem : problems) {
        context.report.noteProblem(problem);
    }
}

bool runOperation(CommandContext &context, const QString &file,
                  const std::function<bool()> &operation)
{
    QStringList errors;
    const auto connection
        = QObject::connect(context.session->statusManager(), &StatusManager::errorMessage,
                           [&errors](const QString &message) { errors.append(message.trimmed()); });
    const bool succeeded = operation();
    QObject::disconnect(connection);
    if (succeeded) {
        return true;
    }
    errors.removeAll(QString());
    if (errors.isEmpty()) {
        errors.append(QStringLiteral("The plug-in failed without an error message"));
        context.report.printHint(file + QLatin1String(": ") + errors.last());
    }
    Problem problem;
    problem.kind = ProblemKind::Message;
    problem.file = file;
    for (const QString &error : qAsConst(errors)) {
        problem.text = error;
        context.report.noteProblem(problem);
    }
    return false;
}

bool hashFiles(CommandContext &context, const QStringList &files, QList<FileHash> *hashes)
{
    QEventLoop loop;
    FileHasher hasher;
    bool finished = false;
    QObject::connect(&hasher, &FileHasher::progress, &loop, [&](qint64 done, qint64 total) {
        context.report.showProgress(
            QStringLiteral("Hashing: %1%").arg(total > 0 ? done * 100 / total : 100));
    });
    QObject::connect(&hasher, &FileHasher::finished, &loop, [&](const QList<FileHash> &result) {
        *hashes = result;
        finished = true;
        loop.quit();
    });
    context.signalWatch.whenReceived(&loop, [&] {
        hasher.cancel();
        loop.quit();
    });
    hasher.start(files);
    loop.exec();
    context.report.showProgress(QString());
    return finished && !context.isInterrupted();
}

bool openMemoryFile(QFile *file)
{
    const int descriptor = memfd_create("loomwright", MFD_CLOEXEC);
    return descriptor >= 0
        && file->open(descriptor, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
}

QString descriptorPath(const QFile &file)
{
    return QStringLiteral("/proc/self/fd/%1").arg(file.handle());
}

QString copyStandardInput(const CommandContext &context, QString *path)
{
    QFile copy;
    if (!openMemoryFile(&copy)) {
        return QStringLiteral("Standard input cannot be read: %1.").arg(qt_error_string());
    }
    const int error = copyContent(context.signalWatch, STDIN_FILENO, &copy);
    if (error != 0) {
        return QStringLiteral("Standard input cannot be read: %1.").arg(qt_error_string(error));
    }
    if (!copy.flush() || dup2(copy.handle(), STDIN_FILENO) < 0) {
        return QStringLiteral("Standard input cannot be stored: %1.").arg(copy.errorString());
    }
    *path = QStringLiteral("/dev/stdin");
    return {};
}
