// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Where a problem comes from. Causes come before their consequences.
enum class ProblemKind {
    Input,      ///< An input was rejected or skipped, by the plug-in or by the host.
    Difference, ///< A file or value differs from a manifest.
    Candidates, ///< Several values were found for one ingredient.
    Message,    ///< The plug-in reported an error while an input was applied.
    Finding,    ///< The host itself found something wrong with a value.
    Check       ///< A check of the plug-in failed.
};

/// What a problem means for a build.
enum class Severity {
    Warning, ///< Nothing.
    Error,   ///< Blocks a build, unless it is started without checks.
    Fatal    ///< Blocks every build.
};

/// Something that is wrong with an image or its inputs.
struct Problem {
    ProblemKind kind = ProblemKind::Input; ///< Where it comes from.
    Severity severity = Severity::Error;   ///< What it means for a build.
    QString text = {};                     ///< What is wrong.
    IngredientId ingredient = {};          ///< The ingredient; empty when it concerns none.
    QStringList files = {};   ///< What it is about; of candidates, the one in use comes first.
    QString required = {};    ///< What should be there, if that can be said.
    QString actual = {};      ///< What is there instead.
    qint64 requiredSize = -1; ///< In bytes, if required is a size; else -1.
    qint64 actualSize = -1;   ///< In bytes, if actual is a size; else -1.
};

/// Problems, the causes first.
using Problems = QVector<Problem>;
