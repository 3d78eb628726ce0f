// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// What the host itself finds wrong with values and files.

#include "host/core/problem.h"

#include <QStringList>

/// What the host finds wrong with values that pass the plug-in's checks: files that are not regular
/// files, are empty or unreadable, control characters, an image that is also an input or that
/// cannot be written.
Problems findingsFor(const Ingredients &ingredients);

/// The input ingredient that refers to the same file as @p file, by device and inode.
std::optional<Ingredient> inputWithFile(const Ingredients &ingredients, const QString &file);

/// Where @p file stops being an XML document: "line 3, column 7: Premature end of document."; empty
/// when it is one, or cannot be read.
QString xmlProblem(const QString &file);

/// What a search in a directory skips.
struct SkippedEntries {
    QStringList unreadable;  ///< Directories.
    QStringList symlinks;    ///< To files and directories.
    QStringList undecodable; ///< Names that the locale's encoding cannot express, as far as it can.
};

/// Finds what a search in @p directory passes over. Hidden entries are not looked at.
SkippedEntries skippedEntriesOf(const QString &directory);
