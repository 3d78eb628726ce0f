// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/supervisor.h"

#include "host/runner/directories.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

using std::chrono::milliseconds;

/// How long descendants may run after the stitcher has ended by itself. A script's `tee`, for example,
/// ends only after the script.
constexpr milliseconds lingerPeriod(1000);

/// The exit statuses that timeout(1) and shells use as well.
constexpr int timedOutStatus = 124;
constexpr int stoppedStatus = 128 + SIGTERM;

} // namespace

Supervisor::Supervisor(const RunnerRequest &hostRequest, const HostConnection &connection,
                       int signalSource, int stopSource)
    : request(hostRequest)
    , host(connection)
    , signals(signalSource)
    , stopPipe(stopSource)
{
}

int Supervisor::run(char **arguments)
{
    Event event = Event::None;
    while (event == Event::None) {
        event = nextEvent(-1);
    }
    if (event == Event::Start) {
        startStitcher(arguments);
        event = waitForEnd();
        processes.terminate();
    }
    const int status = statusAfter(event);
    reportEnd(event);
    while (event != Event::Finish && event != Event::HostGone) {
        event = nextEvent(-1);
    }
    if (event == Event::HostGone && !request.isKept) {
        removeDirectory(request.stagingDirectory);
        removeDirectory(request.workDirectory);
    }
    return status;
}

void Supervisor::startStitcher(char **arguments)
{
    const pid_t supervisor = getpid();
    const pid_t stitcher = fork();
    if (stitcher == 0) {
        becomeStitcher(arguments, supervisor);
    }
    if (stitcher == -1) {
        host.report(RunnerStatus::StartFailed, errno);
    }
    processes = ProcessTree(stitcher);
}

void Supervisor::becomeStitcher(char **arguments, pid_t supervisor) const
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != supervisor) {
        _exit(startFailedStatus); // The supervisor was killed before prctl().
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);

    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (input >= 0 && dup2(input, STDIN_FILENO) == STDIN_FILENO) {
        arguments[0] = const_cast<char *>(request.stitcher.c_str());
        execv(arguments[0], arguments);
    }
    host.report(RunnerStatus::StartFailed, errno);
    _exit(startFailedStatus);
}

/// Returns when the stitcher and its descendants have ended, or why they have to be terminated.
Supervisor::Event Supervisor::waitForEnd()
{
    const auto timeout = request.timeoutMs > 0 ? Clock::now() + milliseconds(request.timeoutMs)
                                               : Clock::time_point::max();
    const auto isStitcherRunning = [this] { return processes.reap() && !processes.status(); };
    const Event event = waitWhile(isStitcherRunning, timeout, Event::TimedOut);
    if (event != Event::None) {
        return event;
    }
    const auto isAnyRunning = [this] { return processes.reap(); };
    return waitWhile(isAnyRunning, Clock::now() + lingerPeriod, Event::LeftBehind);
}

/// Returns Event::None when nothing is running any more, @p late at @p end, or an earlier event.
Supervisor::Event Supervisor::waitWhile(const std::function<bool()> &isRunning,
                                        Clock::time_point end, Event late)
{
    while (isRunning()) {
        if (Clock::now() >= end) {
            return late;
        }
        const Event event = nextEvent(millisecondsUntil(end));
        if (event != Event::None) {
            return event;
        }
    }
    return Event::None;
}

/// Waits for a signal or the host. Returns Event::None when a child has ended or the time is over.
/// @param timeoutMs in milliseconds; negative for forever
Supervisor::Event Supervisor::nextEvent(int timeoutMs)
{
    pollfd sources[]
        = {{signals, POLLIN, 0}, {stopPipe, POLLIN, 0}, {host.descriptor(), POLLIN, 0}};
    const auto &[signal, pipe, socket] = sources;
    if (poll(sources, std::size(sources), timeoutMs) <= 0) {
        return Event::None;
    }
    if (signal.revents != 0 && takeSignals()) {
        return Event::Stop;
    }
    if (pipe.revents != 0) {
        close(std::exchange(stopPipe, -1)); // poll() ignores it from now on.
        return Event::Stop;
    }
    return socket.revents != 0 ? nextCommand() : Event::None;
}

Supervisor::Event Supervisor::nextCommand() const
{
    const std::optional<HostCommand> command = host.nextCommand();
    if (!command) {
        return Event::HostGone;
    }
    switch (*command) {
    case HostCommand::Start:
        return Event::Start;
    case HostCommand::Stop:
        return Event::Stop;
    case HostCommand::Finish:
        return Event::Finish;
    }
    return Event::None;
}

/// Empties the queue of signals; true when one of them is a request to terminate the stitcher.
bool Supervisor::takeSignals() const
{
    bool asked = false;
    signalfd_siginfo info = {};
    while (read(signals, &info, sizeof info) == sizeof info) {
        asked = asked || info.ssi_signo != SIGCHLD;
    }
    return asked;
}

/// Reports how the stitcher has ended, @p end being the reason if it has been terminated.
void Supervisor::reportEnd(Event end) const
{
    const std::optional<int> status = processes.status();
    if (status && WIFSIGNALED(*status)) {
        host.report(RunnerStatus::Signaled, WTERMSIG(*status));
    } else if (status) {
        host.report(RunnerStatus::Exited, WEXITSTATUS(*status));
    }
    if (end == Event::LeftBehind) {
        host.report(RunnerStatus::LeftBehind);
    } else if (end == Event::TimedOut) {
        host.report(RunnerStatus::TimedOut);
    } else if (end != Event::None) {
        host.report(RunnerStatus::Stopped);
    } else if (status == 0 && !request.stagingDirectory.empty()) {
        const int error = syncFiles(request.stagingDirectory);
        if (error != 0) {
            host.report(RunnerStatus::SyncFailed, error);
        }
    }
    host.report(RunnerStatus::Finished);
}

/// The stitcher's own status, unless it was terminated: an end by a signal would look like a crash to
/// the plug-in.
int Supervisor::statusAfter(Event end) const
{
    if (end == Event::TimedOut) {
        return W_EXITCODE(timedOutStatus, 0);
    }
    if (end != Event::None && end != Event::LeftBehind) {
        return W_EXITCODE(stoppedStatus, 0);
    }
    return processes.status().value_or(W_EXITCODE(startFailedStatus, 0));
}
