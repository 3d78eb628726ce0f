// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

class QString;
class QWidget;

/// Asks a question that is answered by two buttons. True for @p yes; Escape and Enter mean @p no.
/// The text is shown literally, since a file name may look like HTML.
bool confirm(QWidget *parent, const QString &title, const QString &text, const QString &yes,
             const QString &no);

/// Shows the errors among @p problems before a build and asks whether to build anyway, which is not
/// offered when one of them must be fixed. True when the build is to start; without errors, does
/// not ask.
bool askToBuild(QWidget *parent, const Problems &problems);
