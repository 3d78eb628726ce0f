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

/// The counts of a check run.
struct CheckResultSummary {
    int checkCount = 0; ///< Number of checks.
    int passCount = 0;  ///< Number of checks that passed.
    int failCount = 0;  ///< Number of checks that failed.
};
