// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/processprobe.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// QProcess needs nine for one process, with Qt 4 twelve for the first one.
const int neededDescriptors = 16;

bool hasFreeDescriptors()
{
    int descriptors[neededDescriptors];
    int count = 0;
    while (count < neededDescriptors
           && (descriptors[count] = open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0) {
        ++count;
    }
    for (int i = 0; i < count; ++i) {
        close(descriptors[i]);
    }
    return count == neededDescriptors;
}

bool canFork()
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    while (child > 0 && waitpid(child, nullptr, 0) == -1 && errno == EINTR) { }
    return child > 0;
}

} // namespace

bool canCreateProcess()
{
    return hasFreeDescriptors() && canFork();
}
