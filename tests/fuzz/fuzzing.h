// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

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

/// A file in memory that holds the input.
class MemoryFile
{
public:
    MemoryFile(const unsigned char *data, std::size_t size)
        : descriptor(memfd_create("input", MFD_CLOEXEC))
    {
        require(descriptor >= 0 && write(descriptor, data, size) == ssize_t(size),
                "there is memory");
    }
    ~MemoryFile()
    {
        close(descriptor);
    }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    QString path() const
    {
        return QStringLiteral("/proc/self/fd/%1").arg(descriptor);
    }

private:
    int descriptor;
};
