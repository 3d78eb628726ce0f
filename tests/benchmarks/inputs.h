// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The inputs of the benchmarks. Each is created on first use, in the directory named by the
/// environment variable LOOMWRIGHT_BENCH_INPUTS or else in the one for temporary files.
namespace inputs {

/// A directory with @p fileCount files in 100 directories; one in a hundred matches a mapping rule.
QString directory(int fileCount);
/// A valid legacy data file with @p nodeCount nodes in 20 sections, about 100 bytes per node.
QString legacyFile(int nodeCount);
/// A configuration of @p lineCount lines with different keys, the last of them known.
QString configuration(int lineCount);
/// A definition of @p groupCount groups with @p ingredientCount ingredients each.
QString definition(int groupCount, int ingredientCount);
/// The paths of @p fileCount files in 100 directories.
QStringList files(int fileCount);
/// A file of text lines, @p size bytes long.
QString textFile(qint64 size);

} // namespace inputs
