// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer with @p text when a reader breaks its word.
inline void promise(bool isKept, const char *text)
{
    if (!isKept) {
        std::fprintf(stderr, "broken promise: %s\n", text);
        std::abort();
    }
}

/// The input as text, as a reader gets it.
inline QString textOf(const unsigned char *data, std::size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
}
