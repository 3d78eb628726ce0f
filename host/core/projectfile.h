// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include <optional>

/// One ingredient's value in a project file.
struct ProjectEntry {
    QString key;
    QString name;
    ValueKind kind = ValueKind::Text;
    QString value;     ///< An absolute path or empty, the chosen entry, or the text.
    qint64 size = -1;  ///< Of an input file in a manifest, in bytes; else -1.
    QByteArray sha256; ///< Of the same file, in hexadecimal; else empty.
};

/// What a manifest records of a build beyond the values.
struct BuildRecord {
    QString imageFile; ///< Absolute path.
    qint64 imageSize = 0;
    QByteArray imageSha256;
    QString configuration; ///< The text that the stitcher was given.
    QString stitcherFile;  ///< Absolute path.
    QByteArray stitcherSha256;
    int stitcherExitStatus = 0;
    QString hostVersion;
    QString pluginVersion;
    QString qtVersion;
    QString time; ///< In UTC, as in ISO 8601.
};

/// The values of all ingredients of a target; with the record of a build it is a manifest.
struct Project {
    QString target;
    QVector<ProjectEntry> entries;
    std::optional<BuildRecord> build;
};

/// Reads @p file. On failure @p project stays as it is.
/// @return an empty text, or what is wrong with the file
QString readProject(const QString &file, Project *project);

/// Writes @p file, whole or not at all, with paths relative to it.
/// @return an empty text, or why it could not be written
QString writeProject(const QString &file, const Project &project);

/// The content of a project file that lies in @p directory.
QJsonObject projectToJson(const Project &project, const QString &directory);

/// The ingredient that @p entry means: by key and name, else by key, or by name where it has no key;
/// one with an invalid index when there is none.
Ingredient ingredientFor(const ProjectEntry &entry, const QVector<Ingredient> &ingredients);

/// The value that @p entry gives to @p ingredient.
/// @return an empty text, or why it does not fit
QString valueFor(const ProjectEntry &entry, const Ingredient &ingredient, QVariant *value);
