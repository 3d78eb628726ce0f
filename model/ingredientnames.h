// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Names in the shipped definition by which the plug-in finds single cells of the ingredient tree.

#include <QString>

/// The ingredient with the path of the image.
const QLatin1String outputFileIngredient("Output file name");
/// The ingredient with the path of the legacy data file.
const QLatin1String legacyDataFileIngredient("Legacy XML Data File");
/// The title of the column with an ingredient's path, text or choice.
const QLatin1String valueColumnTitle("Value");
