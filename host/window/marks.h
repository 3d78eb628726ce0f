// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

enum class RowState;

/// The mark for @p state, of the same width for every state, in the colours of the palette.
QIcon markIcon(RowState state);
