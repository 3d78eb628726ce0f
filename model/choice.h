// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QMetaType>
#include <QStringList>

/// The value of a cell that is a selection from a fixed list.
///
/// Travels in a QVariant under the type name "Choice". The host's cell editors read and return it,
/// so the fields and their order are part of the interface with the host.
struct Choice {
    int selectedIndex = 0; ///< Position in @c choices; any other position means no selection.
    QStringList choices;   ///< The entries, in the order in which they are offered.
};

Q_DECLARE_METATYPE(Choice)
