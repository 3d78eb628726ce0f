// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/ingredients.h"

#include <QString>
#include <QVector>

/// @p word as a shell takes it: in quotes where that is needed.
QString shellQuoted(const QString &word);

/// The terminal command that builds the image from the values of @p ingredients.
/// @param pluginFile what --plugin names
QString terminalCommand(const QVector<Ingredient> &ingredients, const QString &pluginFile);
