// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Comparing values and files with a manifest.

#include "host/core/project.h"

struct CommandContext;

/// Compares the current values, their files and the stitcher with @p manifest, which was loaded;
/// what differs becomes a problem. The image may have another path, and a stitcher that is not
/// found is not compared.
void checkLock(CommandContext &context, const Project &manifest);
