// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/processlimits.h"

#include <QProcess>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// QProcess needs nine, and with Qt 4 twelve for the first process. Some are left for other threads.
const int neededDescriptors = 16;

} // namespace

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

bool hasFailedToFork(const QProcess &process)
{
#if QT_VERSION >= 0x050300
    return process.state() != QProcess::NotRunning && process.processId() <= 0;
#else
    Q_UNUSED(process)
    return false; // QProcess reports it.
#endif
}
