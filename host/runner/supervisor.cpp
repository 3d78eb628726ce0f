// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/supervisor.h"

#include "host/runner/processtree.h"

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

/// How long descendants may take to end after SIGTERM.
constexpr milliseconds gracePeriod(2000);
/// Between two rounds of SIGKILL, unless a child ends earlier: a process may have been started while
/// the list was read.
constexpr milliseconds killInterval(50);
/// What a shell reports for a program that could not be started.
constexpr int startFailedStatus = 127;

/// The signals that ask this process to end.
constexpr int stopSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

bool isIgnored(int number)
{
    struct sigaction action = {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
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
        return W_EXITCODE(startFailedStatus, 0);
    }
    waitForEnd();
    terminateAll();
    return stitcherStatus;
}

/// Signals are read from a descriptor from here on. False, and errno set, on failure.
bool Supervisor::prepare()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    for (const int number : stopSignals) {
        // Under nohup, for example: what is ignored stays ignored.
        if (!isIgnored(number)) {
            sigaddset(&signals, number);
        }
    }
    std::signal(SIGCHLD, SIG_DFL); // Ignored, it would take the stitcher's status away.
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
        _exit(startFailedStatus); // The runner was killed before the line above.
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

/// Returns when the stitcher has ended, or when it is to be ended.
void Supervisor::waitForEnd()
{
    bool stopped = false;
    while (!hasEnded && !stopped) {
        pollfd sources[] = {{host, POLLIN, 0}, {signalDescriptor, POLLIN, 0}};
        if (poll(sources, 2, -1) > 0) {
            const bool asked = takeSignals();
            stopped = asked || (sources[0].revents != 0 && isHostGone());
            reap();
        }
    }
}

/// Ends every descendant: politely at first, then by force.
void Supervisor::terminateAll()
{
    const auto killTime = Clock::now() + gracePeriod;
    bool hasChildren = reap();
    if (hasChildren) {
        signalAll(descendantsOf(runner), SIGTERM);
    }
    while (hasChildren) {
        auto wait = std::chrono::ceil<milliseconds>(killTime - Clock::now());
        if (wait <= wait.zero()) {
            // The children alone: their numbers cannot have passed to other processes. Theirs are
            // children in the next round.
            signalAll(childrenOf(runner), SIGKILL);
            wait = killInterval;
        }
        pollfd source = {signalDescriptor, POLLIN, 0};
        poll(&source, 1, int(wait.count()));
        takeSignals();
        hasChildren = reap();
    }
}

/// Takes note of the children that have ended. False when there is none left, running or not.
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

/// Whether the host has gone or has shut its end down, which asks for the end of the stitcher.
bool Supervisor::isHostGone() const
{
    char ignored = 0;
    const ssize_t size = recv(host, &ignored, sizeof ignored, MSG_DONTWAIT);
    return size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR);
}

/// Empties the queue of signals; whether one of them asks for the end of the stitcher.
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

/// A host that is gone needs no report.
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
        prctl(PR_SET_DUMPABLE,
              0); // The limit does not hold for a core dump that goes to a program.
        std::signal(number, SIG_DFL);
        sigset_t unblocked;
        sigemptyset(&unblocked);
        sigaddset(&unblocked, number);
        sigprocmask(SIG_UNBLOCK, &unblocked, nullptr);
        std::raise(number);
    }
    _exit(WEXITSTATUS(status));
}
