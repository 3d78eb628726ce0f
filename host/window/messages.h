// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Message boxes that show their text literally, since a file name may look like HTML.

class QString;
class QWidget;

/// Shows a warning and waits until it is closed.
void showWarning(QWidget *parent, const QString &title, const QString &text);

/// Asks a question that is answered by two buttons. True for @p yes; Escape and Enter mean @p no.
bool confirm(QWidget *parent, const QString &title, const QString &text, const QString &yes,
             const QString &no);
