// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// Where a group or an ingredient stands in the ingredient tree.
struct IngredientIndex {
    int groupRow = 0;      ///< Row of the group under the root.
    int ingredientRow = 0; ///< Row of the ingredient under its group; 0 in a group's own record.
};
