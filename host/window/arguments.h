// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// The arguments of a program, shared out between Qt and the program.
///
/// Left to itself Qt takes every option that it knows, documented or not, with one dash or two:
/// --plugin would be among them.
struct Arguments {
    QStringList forQt; ///< What Qt documents for the command line of a program with windows.
    QStringList own;   ///< All others.
};

/// Shares out @p arguments; the program's name, which is the first, goes to both.
Arguments splitArguments(const QStringList &arguments);
