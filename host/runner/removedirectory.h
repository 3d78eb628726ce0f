// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Removes @p directory with all that it contains, without following symlinks. If something is
/// mounted in it, whose files belong to somebody else, nothing is removed.
/// @return whether nothing is left
bool removeDirectory(const std::string &directory);
