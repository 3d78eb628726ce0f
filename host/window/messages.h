// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

class QString;
class QWidget;

/// Shows a warning and waits until it is closed. Text is shown literally, since a file name may
/// look like HTML.
void showWarning(QWidget *parent, const QString &title, const QString &text);
