// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Names in the shipped definition that the plug-in depends on.

#include <QString>

// Names of the shipped definition by which the plug-in reaches single cells of the ingredient tree.

/// The image that a build writes.
const QLatin1String outputFileIngredient("Output file name");
/// The data file that is loaded when the ingredient changes.
const QLatin1String legacyDataFileIngredient("Legacy XML Data File");
/// Title of the column that holds an ingredient's path, text or choice.
const QLatin1String valueColumnTitle("Value");
