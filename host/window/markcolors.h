// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Colours that are readable on the background of lists and texts, dark or light.

#include <QPalette>

/// Whether the text of @p palette is light.
inline bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

inline QColor successColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(129, 199, 132) : QColor(27, 118, 47);
}

inline QColor warningColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(255, 183, 77) : QColor(176, 92, 0);
}

inline QColor failureColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(255, 138, 128) : QColor(176, 0, 32);
}
