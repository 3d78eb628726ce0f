// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// Texts of the plug-in that tell a host something it can find out in no other way. A plug-in with
/// other texts works as well, but its messages are shown as they are.
namespace PluginText {

/// A second file for one ingredient; "KEY = FILE" follows.
constexpr char duplicateIngredient[] = " - Duplicate Ingredient found! ";
/// A second entry of a configuration for one key; "KEY = VALUE" follows.
constexpr char duplicateEntry[] = "Config file contains duplicate key value: ";
/// A line of a configuration that is skipped; the line follows.
constexpr char malformedEntry[] = "Malformed config entry found: ";
/// A data file is no XML document. The plug-in does not say where the error is.
constexpr char invalidXml[] = "ERROR: XML Document content could not be set!";
/// Ends the report about a data file that has errors.
constexpr char failedValidation[] = "Legacy XML Data file failed validation checks";

} // namespace PluginText
