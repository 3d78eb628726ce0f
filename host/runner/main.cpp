// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/processtree.h"
#include "host/runner/runnerprotocol.h"
#include "host/runner/supervisor.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int usageError = 2;

/// With this the supervisor is asked to end, also by the kernel when its parent is killed.
constexpr int stopSignal = SIGUSR2;

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

/// Blocks SIGCHLD and the signals that ask a process to end, to be waited for. Those that are
/// ignored, for example under nohup, stay ignored.
sigset_t blockSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGCHLD, stopSignal}) {
        std::signal(number, SIG_DFL); // If it were ignored, it would be lost.
        sigaddset(&signals, number);
    }
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&signals, number);
        }
    }
    sigprocmask(SIG_SETMASK, &signals, nullptr);
    return signals;
}

/// Ends this process as @p status says, which is one of waitpid(): with the same exit status, or by
/// the same signal but without a core dump.
[[noreturn]] void endLike(int status)
{
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
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

/// Waits for the end of @p supervisor and of what it leaves behind when it is killed.
[[noreturn]] void guard(pid_t supervisor, const sigset_t &signals)
{
    ProcessTree processes(supervisor);
    while (processes.reap() && !processes.status()) {
        int number = 0;
        sigwait(&signals, &number);
        // A supervisor that the stitcher has stopped goes on; otherwise nobody would see its end.
        kill(supervisor, number == SIGCHLD ? SIGCONT : stopSignal);
    }
    processes.terminate();
    endLike(processes.status().value_or(0));
}

} // namespace

/// Passes all arguments on to the stitcher.
///
/// There are two processes, so that no descendant is left when one of them is killed: this one,
/// which the plug-in waits for, and its child, which does the work. Whichever is left terminates
/// them.
int main(int, char **arguments)
{
    const char *socket = std::getenv(RunnerProtocol::socketVariable);
    const int host = socket ? std::atoi(socket) : -1;
    const auto request = receiveMessage<RunnerRequest>(host, MSG_DONTWAIT);
    if (!request) {
        std::fputs("loomwright starts this program in place of the stitcher; it is of no use by "
                   "itself.\n",
                   stderr);
        return usageError;
    }
    fcntl(host, F_SETFD, FD_CLOEXEC);
    restoreEnvironment();
    const sigset_t signals = blockSignals();
    const pid_t self = getpid();
    sendMessage(host, RunnerStatus{RunnerStatus::Started, self});

    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const int signalSource = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    const pid_t supervisor = signalSource < 0 ? -1 : fork();
    if (supervisor == -1) {
        sendMessage(host, RunnerStatus{RunnerStatus::StartFailed, errno});
        sendMessage(host, RunnerStatus{RunnerStatus::Finished, 0});
        return startFailedStatus;
    }
    if (supervisor != 0) {
        guard(supervisor, signals);
    }
    prctl(PR_SET_CHILD_SUBREAPER, 1); // It is not inherited.
    prctl(PR_SET_PDEATHSIG, stopSignal);
    if (getppid() != self) {
        std::raise(stopSignal); // The other process was killed before that.
    }
    endLike(Supervisor(*request, host, signalSource).run(arguments));
}
