// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// How a path that the user opens or drops is treated.
enum class InputKind {
    Directory,     ///< Fills ingredients from its files.
    Project,       ///< A project or a manifest: a JSON object, or its name ends in ".loomwright".
    Configuration, ///< A stitcher configuration: its name ends in ".txt".
    File           ///< Fills the ingredient that its name matches.
};

/// Reads the start of @p file if it is a regular file.
InputKind inputKindOf(const QString &file);
