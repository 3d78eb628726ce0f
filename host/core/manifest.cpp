// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/manifest.h"

#include "host/core/filehasher.h"
#include "model/filepath.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Manifest", text);
}

Problem difference(const QString &text, const QString &ingredient, const QString &key,
                   const QString &file)
{
    Problem problem;
    problem.kind = ProblemKind::Difference;
    problem.text = text;
    problem.ingredient = ingredient;
    problem.key = key;
    problem.file = file;
    problem.mustBeFixed = true;
    return problem;
}

Problem difference(const RecordedFile &file, const QString &text, const QString &required,
                   const QString &actual)
{
    Problem problem = difference(text, file.ingredient, file.key, file.file);
    problem.required = required;
    problem.actual = actual;
    return problem;
}

bool isInputFile(const Ingredient &ingredient)
{
    return kindOf(ingredient.value) == ValueKind::File
        && ingredient.value.value<FilePath>().isInput;
}

/// The entry for @p ingredient; one without a key and name when there is none.
ProjectEntry entryFor(const Ingredient &ingredient, const Project &project)
{
    const auto entry = std::find_if(
        project.entries.begin(), project.entries.end(), [&](const ProjectEntry &each) {
            return each.key == ingredient.key && each.name == ingredient.name;
        });
    return entry == project.entries.end() ? ProjectEntry() : *entry;
}

} // namespace

QVector<RecordedFile> recordedFiles(const Project &manifest)
{
    QVector<RecordedFile> files;
    for (const ProjectEntry &entry : manifest.entries) {
        const bool isFile = entry.kind == ValueKind::File && !entry.value.isEmpty();
        const bool isImage = entry.value == manifest.build->imageFile && entry.sha256.isEmpty();
        if (isFile && !isImage) {
            files.append({entry.name, entry.key, entry.value, entry.size, entry.sha256});
        }
    }
    const BuildRecord &build = *manifest.build;
    files.append({tr("the image"), QString(), build.imageFile, build.imageSize, build.imageSha256});
    return files;
}

QVector<Problem> differencesInValues(const Project &manifest,
                                     const QVector<Ingredient> &ingredients,
                                     QVector<RecordedFile> *inputs)
{
    QVector<Problem> problems;
    for (const Ingredient &ingredient : ingredients) {
        const ProjectEntry entry = entryFor(ingredient, manifest);
        const QString value = textOf(ingredient.value);
        const ValueKind kind = kindOf(ingredient.value);
        if (isInputFile(ingredient) && !entry.value.isEmpty() && !value.isEmpty()) {
            inputs->append({ingredient.name, ingredient.key, value, entry.size, entry.sha256});
        } else if ((isInputFile(ingredient) || kind == ValueKind::Choice || kind == ValueKind::Text)
                   && value != entry.value) {
            problems.append(difference(tr("The value differs from the manifest"), ingredient.name,
                                       ingredient.key,
                                       kind == ValueKind::File ? value : QString()));
            problems.last().required = entry.value;
            problems.last().actual = value;
        }
    }
    return problems;
}

QVector<Problem> differencesInFiles(const QVector<RecordedFile> &files,
                                    const QList<FileHash> &hashes)
{
    QVector<Problem> problems;
    for (int i = 0; i < files.count(); ++i) {
        const RecordedFile &file = files.at(i);
        const FileHash &hash = hashes.at(i);
        if (!hash.error.isEmpty()) {
            problems.append(difference(file, hash.error, QString(), QString()));
        } else if (file.sha256.isEmpty()) {
            problems.append(
                difference(file, tr("The manifest records no checksum"), QString(), QString()));
        } else if (hash.size != file.size) {
            problems.append(difference(file, tr("The size differs from the manifest"),
                                       sizeText(file.size), sizeText(hash.size)));
        } else if (hash.sha256 != file.sha256) {
            problems.append(difference(file, tr("The content differs from the manifest"),
                                       QLatin1String(file.sha256), QLatin1String(hash.sha256)));
        }
    }
    return problems;
}

QStringList pathsOf(const QVector<RecordedFile> &files)
{
    QStringList paths;
    for (const RecordedFile &file : files) {
        paths.append(file.file);
    }
    return paths;
}

void setInputHashes(Project *project, const QList<FileHash> &hashes)
{
    for (ProjectEntry &entry : project->entries) {
        for (const FileHash &hash : hashes) {
            if (entry.kind == ValueKind::File && hash.file == entry.value) {
                entry.size = hash.size;
                entry.sha256 = hash.sha256;
            }
        }
    }
}
