// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// @p text for a terminal. Control characters, which could move the cursor or change what was
/// printed, are shown as \u001b and so on, and so are those that reverse the direction of text.
/// Line feeds and tabs stay.
QString safeText(const QString &text);

/// The same for output of the stitcher, in which carriage returns stay too: it may overwrite its own
/// lines to show progress.
QString safeOutput(const QString &text);

/// @p text on one line of a table: line feeds and tabs are escaped as well.
QString safeLine(const QString &text);
