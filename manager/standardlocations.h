// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Directories that the two versions of Qt name in different ways.

#include <QString>

/// The user's documents folder.
QString documentsLocation();
/// The folder for temporary files; empty when there is none.
QString temporaryLocation();
