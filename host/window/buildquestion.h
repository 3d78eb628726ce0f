// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

class QWidget;

/// Shows the errors among @p problems before a build and asks whether to build anyway, which is not
/// offered when one of them must be fixed. True when the build is to start; without errors, does not
/// ask.
bool askToBuild(QWidget *parent, const Problems &problems);
