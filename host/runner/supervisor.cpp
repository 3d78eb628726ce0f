// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/supervisor.h"

#include "host/runner/processtree.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How long descendants may run after the stitcher has ended by itself. A script's `tee`, for example,
/// ends only after the script.
constexpr milliseconds lingerPeriod(1000);
/// How long descendants may take to end after SIGTERM.
constexpr milliseconds gracePeriod(2000);
/// Time between two rounds of SIGKILL, unless a child ends earlier. One round may not be enough: a
/// process may start while the list of children is read.
constexpr int killIntervalMs = 50;
/// The exit status that shells use for a program that could not be started.
constexpr int startFailedStatus = 127;

/// The signals that ask this process to end.
constexpr int stopSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

bool isIgnored(int number)
{
    struct sigaction action = {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// The time until @p end in milliseconds, rounded up; 0 when it has passed.
int remaining(Clock::time_point end)
{
    const auto time = std::chrono::ceil<milliseconds>(end - Clock::now());
    return std::max(0, int(time.count()));
}

void signalAll(const std::vector<pid_t> &processes, int number)
{
    for (const pid_t process : processes) {
        kill(process, number);
    }
}

} // namespace

Supervisor::Supervisor(int hostSocket)
    : host(hostSocket)
    , runner(getpid())
{
}

int Supervisor::run(const char *file, char **arguments)
{
    report(RunnerStatus::Started, runner);
    if (prepare()) {
        stitcher = fork();
    }
    if (stitcher == 0) {
        becomeStitcher(file, arguments);
    }
    if (stitcher == -1) {
        report(RunnerStatus::StartFailed, errno);
        report(RunnerStatus::Finished, 0);
        return W_EXITCODE(startFailedStatus, 0);
    }
    waitForEnd();
    terminateAll();
    report(RunnerStatus::Finished, 0);
    return stitcherStatus;
}

/// Makes signals readable from a file descriptor. Returns false and sets errno on failure.
bool Supervisor::prepare()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    for (const int number : stopSignals) {
        // Ignored signals, for example under nohup, stay ignored.
        if (!isIgnored(number)) {
            sigaddset(&signals, number);
        }
    }
    std::signal(SIGCHLD, SIG_DFL); // If it were ignored, the stitcher's status would be lost.
    if (sigprocmask(SIG_SETMASK, &signals, nullptr) != 0) {
        return false;
    }
    signalDescriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    return signalDescriptor >= 0 && fcntl(host, F_SETFD, FD_CLOEXEC) == 0
        && prctl(PR_SET_CHILD_SUBREAPER, 1) == 0;
}

void Supervisor::becomeStitcher(const char *file, char **arguments) const
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != runner) {
        _exit(startFailedStatus); // The runner was killed before prctl().
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);

    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (input >= 0 && dup2(input, STDIN_FILENO) == STDIN_FILENO) {
        arguments[0] = const_cast<char *>(file);
        execv(file, arguments);
    }
    report(RunnerStatus::StartFailed, errno);
    _exit(startFailedStatus);
}

/// Returns when the stitcher and its descendants have ended, or when they have to be terminated.
void Supervisor::waitForEnd()
{
    bool stopped = false;
    while (!hasEnded && !stopped) {
        stopped = waitForEvent(-1);
        reap();
    }
    const auto lingerEnd = Clock::now() + lingerPeriod;
    bool hasChildren = reap();
    while (hasChildren && !stopped && Clock::now() < lingerEnd) {
        stopped = waitForEvent(remaining(lingerEnd));
        hasChildren = reap();
    }
    if (stopped) {
        report(RunnerStatus::Stopped, 0);
    } else if (hasChildren) {
        report(RunnerStatus::LeftBehind, 0);
    }
}

/// Waits for a signal or the host; true when everything has to be terminated.
/// @param timeoutMs in milliseconds; negative for forever
bool Supervisor::waitForEvent(int timeoutMs)
{
    pollfd sources[] = {{host, POLLIN, 0}, {signalDescriptor, POLLIN, 0}};
    return poll(sources, 2, timeoutMs) > 0
        && (takeSignals() || (sources[0].revents != 0 && isHostGone()));
}

/// Terminates every descendant: first with SIGTERM, then with SIGKILL.
void Supervisor::terminateAll()
{
    const auto killTime = Clock::now() + gracePeriod;
    bool hasChildren = reap();
    if (hasChildren) {
        signalAll(descendantsOf(runner), SIGTERM);
    }
    while (hasChildren) {
        int waitMs = remaining(killTime);
        if (waitMs == 0) {
            // Only the children: their process IDs cannot have been reused. Grandchildren become
            // children in the next round.
            signalAll(childrenOf(runner), SIGKILL);
            waitMs = killIntervalMs;
        }
        pollfd source = {signalDescriptor, POLLIN, 0};
        poll(&source, 1, waitMs);
        takeSignals();
        hasChildren = reap();
    }
}

/// Reaps the children that have ended. False when no child is left, running or not.
bool Supervisor::reap()
{
    int status = 0;
    pid_t process = 0;
    while ((process = waitpid(-1, &status, WNOHANG)) > 0) {
        if (process == stitcher) {
            hasEnded = true;
            stitcherStatus = status;
            reportEnd();
        }
    }
    return process == 0 || errno != ECHILD;
}

/// Whether the host has died or shut down its end, which is the request to terminate the stitcher.
bool Supervisor::isHostGone() const
{
    char ignored = 0;
    const ssize_t size = recv(host, &ignored, sizeof ignored, MSG_DONTWAIT);
    return size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR);
}

/// Empties the queue of signals; true when one of them is a request to terminate the stitcher.
bool Supervisor::takeSignals() const
{
    bool asked = false;
    signalfd_siginfo info = {};
    while (read(signalDescriptor, &info, sizeof info) == sizeof info) {
        asked = asked || info.ssi_signo != SIGCHLD;
    }
    return asked;
}

void Supervisor::reportEnd() const
{
    if (WIFSIGNALED(stitcherStatus)) {
        report(RunnerStatus::Signaled, WTERMSIG(stitcherStatus));
    } else {
        report(RunnerStatus::Exited, WEXITSTATUS(stitcherStatus));
    }
}

/// Ignores errors: a host that has died needs no report.
void Supervisor::report(RunnerStatus::Kind kind, int value) const
{
    const RunnerStatus status = {kind, value};
    send(host, &status, sizeof status, MSG_NOSIGNAL);
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
