// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// One pin of the GPIO settings table.
struct Gpio {
    QString name;               ///< Pin name, shown as the row's header.
    QString gpioBit;            ///< The attribute of that name in an XML source; may be empty.
    unsigned char settings = 0; ///< The settings bits; bits 7 to 1 are shown, bit 0 is not.
    bool aon = false;           ///< Whether @c gpioBit names an always-on pin.
};
