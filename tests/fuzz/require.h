// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer with @p rule unless @p holds.
inline void require(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "violated: %s\n", rule);
        std::abort();
    }
}

/// The input as text, as a reader gets it.
inline QString textOf(const unsigned char *data, std::size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
}
