// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"

#include <QString>

class Session;

/// Whether there is nothing yet but the values that the plug-in proposes.
bool isStart(const Session &session);
/// The problems to show: at the start, without every file that has not been chosen.
Problems shownProblems(const Session &session);

/// The state of @p session and the next step, in one line: how many files were found, how many
/// problems there are, and whether the image is up to date.
QString statusText(const Session &session);
