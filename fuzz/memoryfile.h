// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "promise.h"

#include <sys/mman.h>
#include <unistd.h>

/// A file that holds the input, without a disk.
class MemoryFile
{
public:
    MemoryFile(const unsigned char *data, std::size_t size)
        : handle(memfd_create("input", MFD_CLOEXEC))
    {
        promise(handle >= 0 && write(handle, data, size) == ssize_t(size), "there is memory");
    }
    ~MemoryFile()
    {
        close(handle);
    }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    QString path() const
    {
        return QStringLiteral("/proc/self/fd/%1").arg(handle);
    }

private:
    int handle;
};
