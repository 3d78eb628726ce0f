// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"

/// The checks of single files. Each returns a result for the ingredient named @p name. @p path is
/// used exactly as given, except that white space alone counts as empty and fails.
class IngredientCheck
{
public:
    /// Whether @p path names something that exists.
    static CheckResult fileExists(const QString &name, const QString &path);
    /// Whether the parent directory of @p path exists; a relative path is resolved against the
    /// process's current directory.
    static CheckResult directoryForFileExists(const QString &name, const QString &path);
    /// Whether @p path exists and has exactly @p size bytes.
    static CheckResult exactFileSize(const QString &name, const QString &path, int size);
};
