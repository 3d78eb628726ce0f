// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QString>

/// The terminal command that builds the image from the values of @p ingredients.
/// @param pluginFile the value for --plugin
QString terminalCommand(const Ingredients &ingredients, const QString &pluginFile);
