// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

/// The single checks on files. Each returns a result for the ingredient named @p name and asks the
/// file system for @p path exactly as given; a path of white space alone counts as empty and fails.
class IngredientCheck
{
public:
    /// Whether @p path names something that exists.
    static CheckResult fileExists(const QString &name, const QString &path);
    /// Whether the directory exists in which @p path lies; a relative path is taken against the
    /// process's current directory.
    static CheckResult directoryForFileExists(const QString &name, const QString &path);
    /// Whether @p path exists and holds exactly @p size bytes.
    static CheckResult exactFileSize(const QString &name, const QString &path, int size);
};
