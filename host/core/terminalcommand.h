// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QString>
#include <QVector>

/// @p word quoted for a shell if necessary.
QString shellQuoted(const QString &word);

/// The terminal command that builds the image from the values of @p ingredients.
/// @param pluginFile the value for --plugin
QString terminalCommand(const QVector<Ingredient> &ingredients, const QString &pluginFile);
