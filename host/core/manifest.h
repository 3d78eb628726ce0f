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

/// A file and what a manifest records about it.
struct RecordedFile {
    QString ingredient; ///< Display name of the ingredient.
    QString key;        ///< The ingredient's key; empty for the image.
    QString file;       ///< Absolute path.
    qint64 size = 0;    ///< In bytes.
    QByteArray sha256;  ///< In hexadecimal.
};

/// The image and all inputs recorded in @p manifest, which must have a build.
QVector<RecordedFile> recordedFiles(const Project &manifest);

/// How @p ingredients differ from @p manifest as far as can be seen without reading files:
/// different texts and choices, added or missing inputs. The inputs that remain to be compared are
/// stored in @p inputs, with their current paths. The image's path may differ.
QVector<Problem> differencesInValues(const Project &manifest,
                                     const QVector<Ingredient> &ingredients,
                                     QVector<RecordedFile> *inputs);

/// The files that differ from the record. @p hashes holds one entry per file, in the same order.
QVector<Problem> differencesInFiles(const QVector<RecordedFile> &files,
                                    const QList<FileHash> &hashes);

/// The paths of @p files, in their order.
QStringList pathsOf(const QVector<RecordedFile> &files);

/// Stores size and SHA-256 in the entries whose paths are in @p hashes.
void setInputHashes(Project *project, const QList<FileHash> &hashes);
