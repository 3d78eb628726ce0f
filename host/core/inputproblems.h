// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

/// The problems that applying inputs has caused, in the order of the inputs.
class InputProblems
{
public:
    /// All of them. Candidates that do not exist now are left out, and are no problem if fewer than
    /// two are left. Accesses the file system.
    Problems current() const;
    /// Those about candidates, with all files that were found.
    Problems ambiguities() const;

    /// Adds one.
    void add(const Problem &problem);
    /// Adds the errors that the plug-in has reported about the value of @p ingredient, or about no
    /// certain value. Of very many, the number and the first ones.
    void addMessages(const QStringList &messages, const Ingredient &ingredient = {});
    /// Adds one problem for all of @p files, which were found for @p ingredient beside its value.
    void addCandidates(QStringList files, const Ingredient &ingredient);

    /// Forgets those of one ingredient; with an empty id, those that belong to none.
    void forget(const IngredientId &id);
    /// Replaces those about candidates.
    void setAmbiguities(const Problems &earlier);

private:
    Problems problems;
};
