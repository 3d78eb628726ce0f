// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// What the host itself finds wrong with values.

#include "host/core/ingredients.h"
#include "host/core/problem.h"

#include <QStringList>
#include <QVector>

/// What the host finds wrong with values that the plug-in's checks let pass: files that are no
/// regular files, empty or unreadable ones, control characters, and an output that is an input.
QVector<Problem> findingsFor(const QVector<Ingredient> &ingredients);

/// The input ingredient that names the same file as @p file, by device and inode; one with an
/// invalid index when there is none.
Ingredient inputWithFile(const QVector<Ingredient> &ingredients, const QString &file);

/// Whether a stitcher configuration cannot hold @p value so that reading it gives the same again.
bool isChangedByConfiguration(const QString &value);

/// What loading the configuration in @p file would not bring back, in a sentence for each value.
QStringList configurationRemarks(const QVector<Ingredient> &ingredients, const QString &file);

/// Why nothing may have been found in @p directory: it does not exist, or its symlinks are skipped.
/// Empty when there is nothing to say.
QString directoryRemark(const QString &directory);
