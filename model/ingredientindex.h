// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// Position of a group or an ingredient in the ingredient tree.
struct IngredientIndex {
    /// The position of a group, or of an ingredient in that group.
    explicit IngredientIndex(int group, int ingredient = 0)
        : groupRow(group)
        , ingredientRow(ingredient)
    {
    }

    int groupRow;      ///< Row of the group under the root.
    int ingredientRow; ///< Row of the ingredient under its group; 0 in a group's own record.
};
