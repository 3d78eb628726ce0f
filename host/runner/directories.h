// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// What the runner does with whole directories.

#include <string>

/// Waits until all regular files directly in @p directory are on disk.
/// @return 0, or the number of the first error
int syncFiles(const std::string &directory);

/// Removes @p directory and what it contains, as far as possible. Symlinks are not followed.
void removeDirectory(const std::string &directory);
