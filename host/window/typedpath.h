// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The path that @p text means, as users type or paste it: a URL of a local file, a path below ~,
/// or a path with white space around it, unless a file has exactly that name.
QString typedPath(const QString &text);
