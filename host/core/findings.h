// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// What the host itself finds wrong with values.

#include "host/core/ingredients.h"
#include "host/core/problem.h"

#include <QStringList>
#include <QVector>

/// What the host finds wrong with values that pass the plug-in's checks: files that are not regular
/// files, are empty or unreadable, control characters, and an output that is also an input.
QVector<Problem> findingsFor(const QVector<Ingredient> &ingredients);

/// The input ingredient that refers to the same file as @p file, by device and inode; one with an
/// invalid index when there is none.
Ingredient inputWithFile(const QVector<Ingredient> &ingredients, const QString &file);

/// Whether writing @p value to a stitcher configuration and reading it again would change it.
bool isChangedByConfiguration(const QString &value);

/// What loading the configuration in @p file would not restore, one sentence per value.
QStringList configurationRemarks(const QVector<Ingredient> &ingredients, const QString &file);

/// Why nothing may have been found in @p directory: it does not exist, or its symlinks are skipped.
/// Empty when neither applies.
QString directoryRemark(const QString &directory);
