// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

class QWidget;

/// The icon with that name of the desktop's theme, else the one in icons/, drawn in the palette's
/// colour of text. It follows a change of the palette. Null when there is neither.
QIcon namedIcon(const QString &name);

/// The program's own icon.
QIcon applicationIcon();

/// The size of icons beside text in the font of @p widget, in device-independent pixels.
QSize iconSizeFor(const QWidget *widget);
