// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class Session;

/// The state of @p session and the next step, in one line: how many files were found, how many
/// problems there are, and whether the image is up to date.
QString statusText(const Session &session);
