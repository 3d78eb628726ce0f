// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class ImageSession;

/// Where things stand in @p session and what comes next, in one line: how many files were found, how
/// many problems there are, and how the image stands against the values.
QString statusText(const ImageSession &session);
