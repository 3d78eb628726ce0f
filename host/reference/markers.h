// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QString>

/// Texts by the name of the marker that they replace in a template: "@NAME@".
using Markers = QMap<QString, QString>;

/// The commands and options in scdoc's markup.
Markers manualMarkers();
/// Commands, options and their values, as each shell wants them.
Markers completionMarkers();
