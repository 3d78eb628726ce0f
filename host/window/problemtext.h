// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct Problem;
enum class RowState;

/// A size in the user's locale, with the unit.
QString bytesText(qint64 size);
/// @p text for a widget that would take a tag in a file name for markup.
QString literalText(const QString &text);
/// Whether @p problem is that no file was chosen.
bool isMissingFile(const Problem &problem);
/// How a row with @p problem is marked.
RowState stateOf(const Problem &problem);
/// @p problem in one line, with what is required and found, without the ingredient, the file and
/// what its mark shows.
QString problemLine(const Problem &problem);
