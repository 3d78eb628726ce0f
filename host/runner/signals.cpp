// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/signals.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The end of a child, and what asks this process to end.
constexpr int awaitedSignals[] = {SIGCHLD, SIGHUP, SIGINT, SIGQUIT, SIGTERM};

bool isIgnored(int number)
{
    struct sigaction action = {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

sigset_t blockSignals()
{
    std::signal(SIGCHLD, SIG_DFL); // If it were ignored, the status of a child would be lost.
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : awaitedSignals) {
        if (!isIgnored(number)) {
            sigaddset(&signals, number);
        }
    }
    sigprocmask(SIG_SETMASK, &signals, nullptr);
    return signals;
}

void endLike(int status)
{
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
        const rlimit noCore = {0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        // The limit does not apply to a core dump that is piped to a program.
        prctl(PR_SET_DUMPABLE, 0);
        std::signal(number, SIG_DFL);
        sigset_t unblocked;
        sigemptyset(&unblocked);
        sigaddset(&unblocked, number);
        sigprocmask(SIG_UNBLOCK, &unblocked, nullptr);
        std::raise(number);
    }
    _exit(WEXITSTATUS(status));
}
