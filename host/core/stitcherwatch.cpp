// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stitcherwatch.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// glibc 2.36 forgets to say that these are C functions.
extern "C" {
#include <sys/pidfd.h>
}

namespace {

const int settleIntervalMs = 5;
const int settleRoundsAtMost = 400;
/// Events that were ready when the child was reaped are delivered well within this time.
const int lastEventsMs = 20;
const int killIntervalMs = 50;

void closeHandle(int *handle)
{
    if (*handle >= 0) {
        close(*handle);
        *handle = -1;
    }
}

QList<int> allProcesses()
{
    QList<int> processes;
    const QStringList names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &name : names) {
        bool isNumber = false;
        const int process = name.toInt(&isNumber);
        if (isNumber) {
            processes.append(process);
        }
    }
    return processes;
}

/// The parent of a process, 0 when it cannot be told.
int parentOf(int process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    // The program's name, in brackets, may hold blanks and brackets itself.
    const QByteArray line = file.readAll();
    return line.mid(line.lastIndexOf(')') + 2).split(' ').value(1).toInt();
}

QSet<int> ownChildren()
{
    QSet<int> children;
    for (const int process : allProcesses()) {
        if (parentOf(process) == getpid()) {
            children.insert(process);
        }
    }
    return children;
}

bool holdsPipe(int process, ino_t pipe)
{
    const QString folder = QStringLiteral("/proc/%1/fd/").arg(process);
    const QByteArray wanted = "pipe:[" + QByteArray::number(qulonglong(pipe)) + "]";
    const QStringList handles
        = QDir(folder).entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &handle : handles) {
        char target[64] = {};
        const QByteArray link = QFile::encodeName(folder + handle);
        if (readlink(link.constData(), target, sizeof target - 1) > 0 && wanted == target) {
            return true;
        }
    }
    return false;
}

} // namespace

StitcherWatch::StitcherWatch(QObject *parent)
    : QObject(parent)
{
    killTimer.setInterval(killIntervalMs);
    connect(&killTimer, &QTimer::timeout, this, &StitcherWatch::killHolders);
}

StitcherWatch::~StitcherWatch()
{
    pipeNotifier.reset();
    childNotifier.reset();
    closeHandle(&pipeRead);
    closeHandle(&pipeWrite);
    closeHandle(&childHandle);
}

bool StitcherWatch::prepare()
{
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) {
        return false;
    }
    pipeRead = ends[0];
    pipeWrite = ends[1];
    fcntl(pipeRead, F_SETFD, FD_CLOEXEC);
    earlierChildren = ownChildren();
    return true;
}

void StitcherWatch::begin()
{
    closeHandle(&pipeWrite);
    const QSet<int> newChildren = ownChildren() - earlierChildren;
    if (!newChildren.isEmpty()) {
        child = *newChildren.begin();
        childHandle = pidfd_open(child, 0);
    }
    pipeNotifier = std::make_unique<QSocketNotifier>(pipeRead, QSocketNotifier::Read);
    connect(pipeNotifier.get(), &QSocketNotifier::activated, this, &StitcherWatch::pipeClosed);
    if (childHandle >= 0) {
        childNotifier = std::make_unique<QSocketNotifier>(childHandle, QSocketNotifier::Read);
        connect(childNotifier.get(), &QSocketNotifier::activated, this, &StitcherWatch::childEnded);
    }
}

bool StitcherWatch::hasChild() const
{
    return child != 0;
}

void StitcherWatch::pipeClosed()
{
    char ignored[4096];
    if (read(pipeRead, ignored, sizeof ignored) > 0) {
        return; // Whoever writes into a handle it does not know is still there.
    }
    pipeNotifier->setEnabled(false);
    pipeNotifier.release()->deleteLater();
    settleWhenGone();
}

void StitcherWatch::childEnded()
{
    childNotifier->setEnabled(false);
    childNotifier.release()->deleteLater();
    settleWhenGone();
}

void StitcherWatch::settleWhenGone()
{
    if (!pipeNotifier && !childNotifier) {
        settle();
    }
}

/// The child is dead; its last words and its end still have to pass through the plug-in.
void StitcherWatch::settle()
{
    if (!isReaped() && ++settleRounds < settleRoundsAtMost) {
        QTimer::singleShot(settleIntervalMs, this, &StitcherWatch::settle);
        return;
    }
    killTimer.stop();
    QTimer::singleShot(lastEventsMs, this, &StitcherWatch::ended);
}

bool StitcherWatch::isReaped() const
{
    if (child == 0) {
        return true;
    }
    siginfo_t info = {};
    return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == -1
        && errno == ECHILD;
}

void StitcherWatch::kill()
{
    killHolders();
    // Again until the end: a process may have been started while the list was read.
    killTimer.start();
}

void StitcherWatch::killHolders()
{
    struct stat pipeState = {};
    if (pipeRead < 0 || fstat(pipeRead, &pipeState) != 0) {
        return;
    }
    for (const int process : allProcesses()) {
        if (process != getpid() && holdsPipe(process, pipeState.st_ino)) {
            ::kill(process, SIGKILL);
        }
    }
    if (childHandle >= 0) {
        pidfd_send_signal(childHandle, SIGKILL, nullptr, 0);
    }
}
