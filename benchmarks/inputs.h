// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The inputs of the measurements, made when they are first asked for, in the folder that the
/// environment variable LOOMWRIGHT_BENCH_INPUTS names or else in the one for temporary files. Each
/// takes its size as a number, so that a tenth of it can be measured as well.
namespace inputs {

/// A folder with @p fileCount files in 100 folders, of which one in a hundred fits a mapping rule.
QString directory(int fileCount);
/// A sound legacy data file with @p nodeCount nodes in 20 sections, about 100 bytes a node.
QString legacyFile(int nodeCount);
/// A configuration of @p lineCount lines with different keys, the last of them known.
QString configuration(int lineCount);
/// A definition of @p groupCount groups with @p ingredientCount ingredients each.
QString definition(int groupCount, int ingredientCount);
/// @p fileCount files in 100 folders, and their paths.
QStringList files(int fileCount);
/// A file of text lines, @p size bytes long.
QString textFile(qint64 size);

} // namespace inputs
