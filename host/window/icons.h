// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

class QWidget;

/// The icon named @p name from the desktop's theme, else the one in icons/, drawn in the text
/// colour of the palette, also after the palette has changed. Null when there is neither.
QIcon namedIcon(const QString &name);

/// The program's icon.
QIcon applicationIcon();

/// The size of icons next to text in the font of @p widget, in device-independent pixels.
QSize iconSizeFor(const QWidget *widget);
