// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

class QAbstractItemModel;

/// One row of the plug-in's check table, with the ingredient and file it is about.
struct FileCheck {
    bool passed = false;      ///< Whether the check succeeded.
    QString details;          ///< What was found, in the plug-in's words.
    Ingredient ingredient;    ///< The one that was checked, with the value that it had.
    qint64 expectedSize = -1; ///< In bytes; -1 when any size is valid.
    qint64 actualSize = -1;   ///< In bytes; -1 when there is no such regular file.
};

/// The rows of the plug-in's check table, with the ingredients that they are about.
QVector<FileCheck> checksIn(const QAbstractItemModel &table, const Ingredients &ingredients);

/// The failed ones of @p checks, one for each ingredient: a missing file has no wrong size.
Problems failuresIn(const QVector<FileCheck> &checks);
