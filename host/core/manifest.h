// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Comparing values and files with a manifest.

#include "host/core/ingredients.h"
#include "host/core/problem.h"
#include "host/core/projectfile.h"

#include <QList>
#include <QStringList>
#include <QVector>

struct FileHash;

/// A file with what a manifest records of it.
struct RecordedFile {
    QString ingredient; ///< Display name of the ingredient.
    QString key;        ///< The ingredient's key; empty for the image.
    QString file;       ///< Absolute path.
    qint64 size = 0;    ///< In bytes.
    QByteArray sha256;  ///< In hexadecimal.
};

/// The image and all inputs that @p manifest, which has a build, records.
QVector<RecordedFile> recordedFiles(const Project &manifest);

/// What differs from @p manifest in @p ingredients without looking into files: other texts and
/// choices, inputs more or fewer. The inputs that remain to be compared go into @p inputs, each with
/// the path that it has now. The image's path may differ.
QVector<Problem> differencesInValues(const Project &manifest,
                                     const QVector<Ingredient> &ingredients,
                                     QVector<RecordedFile> *inputs);

/// The files that are not as recorded. @p hashes holds one entry per file, in the same order.
QVector<Problem> differencesInFiles(const QVector<RecordedFile> &files,
                                    const QList<FileHash> &hashes);

/// The paths of @p files, in their order.
QStringList pathsOf(const QVector<RecordedFile> &files);

/// The paths of all input files that @p project names, and in the same order the entries that
/// setInputHashes() completes.
QStringList inputPaths(const Project &project, const QVector<Ingredient> &ingredients);
/// Writes size and SHA-256 into the entries whose paths are in @p hashes.
void setInputHashes(Project *project, const QList<FileHash> &hashes);
