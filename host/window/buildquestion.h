// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

#include <QVector>

class QWidget;

/// Shows @p problems before a build and asks whether to build all the same, which is not on offer
/// when one of them must be fixed. True when the build is to start; at once without problems.
bool askToBuild(QWidget *parent, const QVector<Problem> &problems);

/// Asks whether to stop the build that is running, since the window is to be closed.
bool askToStop(QWidget *parent);
