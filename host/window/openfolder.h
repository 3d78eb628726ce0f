// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Opens the folder @p path in the desktop's file manager.
/// @return an empty text, or why it could not be opened
QString openFolder(const QString &path);
