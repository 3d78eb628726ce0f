// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// The arguments of the program, split between Qt and the program itself.
///
/// By default Qt removes every option that it knows, documented or not, with one dash or two:
/// --plugin would be among them.
struct Arguments {
    QStringList forQt; ///< The options that Qt documents for programs with windows.
    QStringList own;   ///< All others.
};

/// Splits @p arguments; the first, the program's name, goes to both.
Arguments splitArguments(const QStringList &arguments);
