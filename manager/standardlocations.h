// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Standard directories, which Qt 4 and Qt 5 provide through different classes.

#include <QString>

/// The user's documents directory.
QString documentsLocation();
/// The directory for temporary files; empty when there is none.
QString temporaryLocation();
