// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Project files and manifests.

#include "host/core/ingredients.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVector>

#include <optional>

/// One ingredient's value in a project file.
struct ProjectEntry {
    IngredientId ingredient;          ///< Its key may be empty.
    ValueKind kind = ValueKind::Text; ///< What @c value is.
    QString value;                    ///< An absolute path or empty, the chosen entry, or the text.
    qint64 size = -1;                 ///< Of an input file in a manifest, in bytes; else -1.
    QByteArray sha256 = {};           ///< Of the same file, in hexadecimal; else empty.
};

/// What a manifest records of a build beyond the values.
struct BuildRecord {
    QString imageFile;          ///< Absolute path.
    qint64 imageSize = 0;       ///< In bytes.
    QByteArray imageSha256;     ///< In hexadecimal.
    QString configuration;      ///< The text that the stitcher was given.
    QString stitcherFile;       ///< Absolute path.
    QByteArray stitcherSha256;  ///< In hexadecimal.
    int stitcherExitStatus = 0; ///< 0, since a failed build has no record.
    QString hostVersion;        ///< Of the program that built the image.
    QString pluginVersion;      ///< As the plug-in reports it.
    QString qtVersion;          ///< Of the Qt used at run time.
    QString time;               ///< In UTC, in ISO 8601.
};

/// The values of all ingredients of a target; with a build record, a manifest.
struct Project {
    QString target;                   ///< Display name of the target.
    QList<ProjectEntry> entries;      ///< In tree order.
    std::optional<BuildRecord> build; ///< In a manifest only.

    /// Whether both hold the same values for the same ingredients; sizes and hashes are ignored.
    bool hasSameValuesAs(const Project &other) const;
};

Q_DECLARE_METATYPE(Project)

/// Reads @p file. On failure @p project is unchanged.
/// @return an empty text, or what is wrong with the file
QString readProject(const QString &file, Project *project);

/// Why @p project cannot be applied to a target with that name and those ingredients; empty when it
/// can.
QString projectProblem(const Project &project, const QString &target,
                       const Ingredients &ingredients);

/// The ingredient that @p entry refers to: by key and name, else by key.
std::optional<Ingredient> ingredientFor(const ProjectEntry &entry, const Ingredients &ingredients);

/// Writes @p file, as resolvedTarget() returns it, with paths relative to it.
/// @return an empty text, or why it could not be written
QString writeProject(const QString &file, const Project &project);

/// The content of a project file in @p directory.
QJsonObject projectToJson(const Project &project, const QString &directory);
