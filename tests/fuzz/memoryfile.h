// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "require.h"

#include <sys/mman.h>
#include <unistd.h>

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
