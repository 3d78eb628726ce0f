// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

class QPalette;

/// The state of an ingredient, shown by its mark; later values override earlier ones.
enum class RowState {
    Plain, ///< Not a file, or an optional file that is not chosen.
    Good,
    Newer,   ///< The file has changed since the image was built.
    Missing, ///< A required file has not been chosen yet.
    Warning, ///< A problem that blocks nothing.
    Problem
};

/// The mark for @p state, in the colours of the palette; all marks have the same width.
QIcon markIcon(RowState state);

/// The colour of errors, readable on the background of lists and texts, dark or light.
QColor failureColor(const QPalette &palette);
