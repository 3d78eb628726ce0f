// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

enum class RowState;

/// The mark for @p state, in the colours of the palette; all marks have the same width.
QIcon markIcon(RowState state);
