// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/hostconnection.h"
#include "host/runner/processtree.h"
#include "host/runner/signals.h"
#include "host/runner/supervisor.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int usageError = 2;

/// Removes the variables meant for the runner alone, and restores the user's PATH for the stitcher.
void restoreEnvironment()
{
    if (const char *path = std::getenv(RunnerProtocol::pathVariable)) {
        setenv("PATH", std::string(path).c_str(), 1);
    } else {
        unsetenv("PATH");
    }
    unsetenv(RunnerProtocol::pathVariable);
    unsetenv(RunnerProtocol::socketVariable);
}

/// Waits for the end of @p supervisor and of what it leaves behind when it is killed.
/// @param signals blocked; those that ask this process to end are passed on
/// @param stopPipe its end stops the supervisor, also when this process is killed
[[noreturn]] void guard(pid_t supervisor, const sigset_t &signals, int stopPipe)
{
    ProcessTree processes(supervisor);
    while (processes.reap() && !processes.status()) {
        int number = 0;
        sigwait(&signals, &number);
        if (number != SIGCHLD) {
            close(std::exchange(stopPipe, -1));
        }
    }
    processes.terminate();
    endLike(processes.status().value_or(0));
}

} // namespace

/// Passes all arguments on to the stitcher.
///
/// There are two processes, so that no descendant is left when one of them is killed: this one, which
/// the plug-in waits for, and its child, which does the work. Whichever is left terminates them.
int main(int, char **arguments)
{
    const char *socketText = std::getenv(RunnerProtocol::socketVariable);
    const HostConnection host(socketText ? std::atoi(socketText) : -1);
    const std::optional<RunnerRequest> request = host.takeRequest();
    if (!request) {
        std::fputs("loomwright starts this program in place of the stitcher; it is of no use by "
                   "itself.\n",
                   stderr);
        return usageError;
    }
    restoreEnvironment();
    const sigset_t signals = blockSignals();
    host.report(RunnerStatus::Started, getpid());

    const int signalDescriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    int stopPipe[2] = {-1, -1};
    const bool prepared = signalDescriptor >= 0 && pipe2(stopPipe, O_CLOEXEC) == 0
        && prctl(PR_SET_CHILD_SUBREAPER, 1) == 0;
    const pid_t supervisor = prepared ? fork() : -1;
    if (supervisor == -1) {
        host.report(RunnerStatus::StartFailed, errno);
        host.report(RunnerStatus::Finished);
        return startFailedStatus;
    }
    if (supervisor == 0) {
        close(stopPipe[1]);
        prctl(PR_SET_CHILD_SUBREAPER, 1); // It is not inherited.
        endLike(Supervisor(*request, host, signalDescriptor, stopPipe[0]).run(arguments));
    }
    close(stopPipe[0]);
    guard(supervisor, signals, stopPipe[1]);
}
