// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/manifestcheck.h"

#include "host/core/paths.h"
#include "host/core/plugin.h"
#include "host/core/signalwatch.h"
#include "host/core/stitcher.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"
#include "plugin/iloomwrightplugin.h"

#include <QEventLoop>

#include <optional>

namespace {

const char interrupted[] = "The comparison was interrupted.";

/// A file and what the manifest records about it.
struct RecordedFile {
    IngredientId id; ///< For the image and the stitcher, a name without a key.
    FileRecord current;
    qint64 size = -1;  ///< In bytes; -1 when it is not recorded.
    QByteArray sha256; ///< Empty when it is not recorded.
};

using RecordedFiles = QVector<RecordedFile>;

RecordedFile recordedStitcher(const QString &file, const BuildRecord &build)
{
    return {{QStringLiteral("The stitcher"), {}}, recordOf(file), -1, build.stitcherSha256};
}

Problem differenceOf(const IngredientId &id, const QString &file, const QString &text,
                     const QString &recorded = {}, const QString &actual = {})
{
    return {ProblemKind::Difference, Severity::Fatal, text, id, {file}, recorded, actual};
}

/// How the hashed @p file differs from its record, if it does.
std::optional<Problem> differenceIn(const RecordedFile &file)
{
    const auto &[id, current, size, sha256] = file;
    if (!current.error.isEmpty()) {
        return differenceOf(id, current.file, current.error);
    }
    if (sha256.isEmpty()) {
        return differenceOf(id, current.file, QStringLiteral("The manifest records no checksum"));
    }
    if (size >= 0 && current.state.size != size) {
        return differenceOf(id, current.file, QStringLiteral("The size differs from the manifest"),
                            sizeText(size), sizeText(current.state.size));
    }
    if (current.sha256 != sha256) {
        return differenceOf(id, current.file,
                            QStringLiteral("The content differs from the manifest"),
                            QLatin1String(sha256), QLatin1String(current.sha256));
    }
    return std::nullopt;
}

/// None when a signal interrupted it.
std::optional<QList<FileRecord>> hashFiles(const CommandContext &context,
                                           const QList<FileRecord> &files)
{
    QEventLoop loop;
    FileHasher hasher;
    std::optional<QList<FileRecord>> hashed;
    QObject::connect(&hasher, &FileHasher::finished, &loop, [&](const QList<FileRecord> &records) {
        hashed = records;
        loop.quit();
    });
    context.signalWatch.whenReceived(&loop, [&loop] { loop.quit(); });
    hasher.add(files);
    loop.exec();
    return context.isInterrupted() ? std::nullopt : hashed;
}

/// Hashes @p files. Returns how they differ from their records; none when a signal interrupted it.
std::optional<Problems> compareContents(CommandContext &context, RecordedFiles *files)
{
    QList<FileRecord> records;
    for (const RecordedFile &file : qAsConst(*files)) {
        records.append(file.current);
    }
    const auto hashed = hashFiles(context, records);
    if (!hashed) {
        return std::nullopt;
    }
    Problems differences;
    for (int i = 0; i < files->count(); ++i) {
        (*files)[i].current = hashed->at(i);
        const auto difference = differenceIn(files->at(i));
        if (difference) {
            differences.append(*difference);
        }
    }
    return differences;
}

/// What @p manifest records of @p ingredient, one of @p ingredients; an empty entry when nothing.
ProjectEntry entryFor(const Ingredient &ingredient, const Ingredients &ingredients,
                      const Project &manifest)
{
    for (const ProjectEntry &entry : manifest.entries) {
        const auto named = ingredientFor(entry, ingredients);
        if (named && named->id == ingredient.id) {
            return entry;
        }
    }
    return {};
}

/// Finds values that differ from @p manifest, without reading files, and the input files that
/// remain to be compared.
RecordedFiles compareValues(Values *values, const Project &manifest)
{
    RecordedFiles files;
    const FileRecords loaded = values->inputRecords();
    const Ingredients ingredients = values->ingredients();
    for (const Ingredient &ingredient : ingredients) {
        const ProjectEntry entry = entryFor(ingredient, ingredients, manifest);
        const QString value
            = ingredient.isInputFile() ? absolutePath(ingredient.text()) : ingredient.text();
        if (ingredient.isInputFile() && !entry.value.isEmpty() && !value.isEmpty()) {
            const FileRecord current = loaded.value(value, recordOf(value));
            files.append({ingredient.id, current, entry.size, entry.sha256});
        } else if (!ingredient.isOutputFile() && kindOf(ingredient.value) != ValueKind::Other
                   && value != entry.value) {
            values->addProblem(differenceOf(
                ingredient.id, ingredient.isInputFile() ? value : QString(),
                QStringLiteral("The value differs from the manifest"), entry.value, value));
        }
    }
    return files;
}

/// The input files that @p manifest names, and its image.
RecordedFiles filesIn(const Project &manifest, const Ingredients &ingredients)
{
    RecordedFiles files;
    for (const ProjectEntry &entry : manifest.entries) {
        if (ingredientFor(entry, ingredients)->isInputFile() && !entry.value.isEmpty()) {
            files.append({entry.ingredient, recordOf(entry.value), entry.size, entry.sha256});
        }
    }
    const BuildRecord &build = *manifest.build;
    files.append({{QStringLiteral("The image"), {}},
                  recordOf(build.imageFile),
                  build.imageSize,
                  build.imageSha256});
    return files;
}

void showDifferences(CommandContext &context, const Problems &differences)
{
    std::vector<Record> rows;
    for (const Problem &difference : differences) {
        rows.push_back({{"Changed", nullptr, difference.ingredient.name},
                        {"Difference", nullptr, difference.text},
                        {"Recorded", nullptr, difference.required},
                        {"Actual", nullptr, difference.actual},
                        {"File", nullptr, difference.files.first()}});
    }
    context.report.addProblems(differences);
    context.report.printTable(rows);
}

/// Why @p manifest, which was read from @p file, cannot be compared; empty when it can.
QString manifestProblem(const CommandContext &context, const QString &file, const Project &manifest)
{
    if (!manifest.build) {
        return QStringLiteral("%1 is a project file; it records no build.").arg(file);
    }
    const QString problem = projectProblem(manifest, context.plugin->root()->getTargetName(),
                                           context.values->ingredients());
    return problem.isEmpty() ? QString() : file + QLatin1String(": ") + problem;
}

} // namespace

void checkLock(CommandContext &context, const Project &manifest)
{
    Values *values = context.values;
    if (!manifest.build) {
        values->reject(QStringLiteral("%1 is not a manifest, which --locked needs.")
                           .arg(context.commandLine.projectFile));
        return;
    }
    RecordedFiles files = compareValues(values, manifest);
    const QString stitcher = locateStitcher(context.commandLine.stitcherFile).file;
    if (!stitcher.isEmpty()) {
        files.append(recordedStitcher(stitcher, *manifest.build));
    }
    const auto differences = compareContents(context, &files);
    if (!differences) {
        values->reject(QLatin1String(interrupted));
        return;
    }
    for (const RecordedFile &file : qAsConst(files)) {
        context.lockedFiles.insert(file.current.file, file.current);
    }
    for (const Problem &difference : *differences) {
        values->addProblem(difference);
    }
}

int verifyManifest(CommandContext &context)
{
    Report &report = context.report;
    const QString file = context.commandLine.arguments.first();
    Project manifest;
    QString problem = readProject(file, &manifest);
    if (problem.isEmpty()) {
        problem = manifestProblem(context, file, manifest);
    }
    if (!problem.isEmpty()) {
        return context.report.addFailure(problem);
    }
    RecordedFiles files = filesIn(manifest, context.values->ingredients());
    const RecordedFile stitcher = recordedStitcher(manifest.build->stitcherFile, *manifest.build);
    QString remark;
    if (stitcher.current.state.exists) {
        files.append(stitcher);
    } else {
        remark = QStringLiteral("; the stitcher %1 was not compared: it does not exist")
                     .arg(stitcher.current.file);
    }
    const auto differences = compareContents(context, &files);
    if (!differences) {
        return report.addFailure(QLatin1String(interrupted));
    }
    showDifferences(context, *differences);
    report.print(QStringLiteral("%1: %2 files compared, %3 different%4")
                     .arg(file, QString::number(files.count()),
                          QString::number(differences->count()), remark));
    report.set("manifest", absolutePath(file));
    report.set("compared", files.count());
    report.set("differences", differences->count());
    report.set("notCompared",
               QJsonArray::fromStringList(remark.isEmpty() ? QStringList()
                                                           : QStringList(stitcher.current.file)));
    return differences->isEmpty() ? Success : Failed;
}
