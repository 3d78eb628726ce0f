// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/processlimits.h"

#include <QProcess>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#if QT_VERSION < 0x050000

bool hasFreeDescriptors()
{
    // QProcess needs twelve for the first process. Some are left for other threads.
    const int neededDescriptors = 16;
    int descriptors[neededDescriptors];
    int count = 0;
    while (count < neededDescriptors && pipe2(descriptors + count, O_CLOEXEC) == 0) {
        count += 2;
    }
    for (int i = 0; i < count; ++i) {
        close(descriptors[i]);
    }
    return count == neededDescriptors;
}

bool hasFailedToFork(const QProcess &process)
{
    Q_UNUSED(process)
    return false; // QProcess reports it.
}

#else

bool hasFreeDescriptors()
{
    return true; // QProcess reports that there are too few.
}

bool hasFailedToFork(const QProcess &process)
{
    return process.state() != QProcess::NotRunning && process.processId() <= 0;
}

#endif

void abandon(QProcess *process)
{
    process->disconnect();
    // In the order in which they were created: one for each pipe, then one for the process. The
    // last has no file descriptor, but a number that was never set.
    const QList<QSocketNotifier *> notifiers = process->findChildren<QSocketNotifier *>();
    for (int i = 0; i < notifiers.count(); ++i) {
        notifiers.at(i)->setEnabled(false);
        if (i < notifiers.count() - 1) {
            close(int(notifiers.at(i)->socket()));
        }
    }
}
