// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPalette>

/// A red that is readable on the background of lists and texts, dark or light.
inline QColor failureColor(const QPalette &palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    return isDark ? QColor(255, 138, 128) : QColor(176, 0, 32);
}
