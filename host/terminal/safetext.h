// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// @p text for a terminal. Control characters, which could move the cursor or change what was
/// printed, are shown as \u001b and so on, and so are those that reverse the direction of text.
/// @param allowed those that stay as they are
QString safeText(const QString &text, const QString &allowed = QStringLiteral("\n\t"));
