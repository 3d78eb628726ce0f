// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QMetaType>

/// The value of one cell of the GPIO settings table: one bit.
///
/// Travels in a QVariant under the type name "GpioBitToggle". The host's view reads it, so the
/// fields and their order are part of the interface with the host; it writes back 0 or 1.
struct GpioBitToggle {
    unsigned char bitPosition = 0; ///< Number of the bit in the pin's settings, 7 to 1.
    unsigned char value = 0;       ///< The bit, 0 or 1.
    bool enabled = true;           ///< Always true in values from the model.
};

Q_DECLARE_METATYPE(GpioBitToggle)
