// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Columns and roles of the plug-in's models.

#include <Qt>

/// The columns of the ingredient tree with the shipped definition.
namespace IngredientColumn {
/// Column numbers; Count is how many there are.
enum Column {
    Name,  ///< Display name of the group or ingredient.
    Value, ///< Path, text or choice; visible and editable.
    Key,   ///< Name in the stitcher's configuration; hidden.
    Count
};
} // namespace IngredientColumn

/// The columns of the check table.
namespace CheckColumn {
/// Column numbers; Count is how many there are.
enum Column {
    Passed,     ///< Whether the check passed, as a boolean.
    Ingredient, ///< Display name of the ingredient.
    Details,    ///< What was found, in words.
    Count
};
} // namespace CheckColumn

/// The role for a row's visibility in the ingredient tree: "visible" or "hidden" when read, a
/// boolean when set.
const int VisibilityRole = Qt::UserRole;
