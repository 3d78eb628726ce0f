// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Stitcher configurations: writing one, and what gets lost on the way there or back.

#include "host/core/ingredients.h"

#include <QByteArray>
#include <QStringList>

#include <optional>

class Plugin;

/// The configuration that @p plugin writes for the current values; none when the plug-in fails,
/// whose messages say why.
std::optional<QByteArray> configurationOf(const Plugin &plugin);

/// What loading @p configuration, which the plug-in has written, would not restore, one text per
/// value.
QStringList lossesIn(const QByteArray &configuration, const Ingredients &ingredients);

/// What has no effect in the configuration @p loaded, one text per line: keys that belong to no
/// ingredient, and fixed values that differ from those in @p written by the plug-in.
QStringList ineffectiveEntries(const QByteArray &loaded, const QByteArray &written,
                               const Ingredients &ingredients);
