// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The outcome of one check of one file.
struct CheckResult {
    bool passed = false;    ///< Whether the check succeeded.
    QString ingredientName; ///< Display name of the ingredient that was checked.
    QString details;        ///< What was found, in words.
};

/// The counts of a check run, as they stand in the check table.
struct CheckResultSummary {
    int checkCount = 0; ///< Number of checks made.
    int passCount = 0;  ///< How many of them passed.
    int failCount = 0;  ///< How many of them failed.
};
