// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/supervisor.h"

#include "host/runner/removedirectory.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using std::chrono::milliseconds;

/// How long descendants may run after the stitcher has ended by itself. A script's `tee`, for
/// example, ends only after the script.
constexpr milliseconds lingerPeriod(1000);

/// The exit statuses that timeout(1) and shells use as well.
constexpr int timedOutStatus = 124;
constexpr int stoppedStatus = 128 + SIGTERM;

/// Returns an error number. A file system that cannot sync is no error.
int syncFile(const char *file)
{
    const int descriptor = open(file, O_RDONLY | O_CLOEXEC);
    const int error = descriptor >= 0 && fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    return error == EINVAL || error == ENOTSUP ? 0 : error;
}

/// Waits until all regular files directly in @p directory are on disk. Returns the first error.
int syncFiles(const char *directory)
{
    std::error_code error;
    for (fs::directory_iterator file(directory, error), end; !error && file != end;
         file.increment(error)) {
        const bool isRegular = file->symlink_status(error).type() == fs::file_type::regular;
        const int syncError = isRegular ? syncFile(file->path().c_str()) : 0;
        if (syncError != 0) {
            return syncError;
        }
    }
    return error.value();
}

} // namespace

Supervisor::Supervisor(const RunnerRequest &hostRequest, int hostSocket, int signalSource)
    : request(hostRequest)
    , host(hostSocket)
    , signals(signalSource)
{
}

int Supervisor::run(char **arguments)
{
    Event event = Event::None;
    while (event == Event::None) {
        event = nextEvent(Clock::time_point::max());
    }
    if (event == Event::Start) {
        startStitcher(arguments);
        event = waitForEnd();
        processes.terminate();
    }
    const int status = statusAfter(event);
    reportEnd(event);
    while (event != Event::Finish && event != Event::HostGone) {
        event = nextEvent(Clock::time_point::max());
    }
    if (event == Event::HostGone && !request.isKept) {
        removeDirectory(request.stagingDirectory);
        removeDirectory(request.workDirectory);
    }
    return status;
}

/// Ignores errors: a host that has died needs no reports.
void Supervisor::report(RunnerStatus::Kind kind, int value) const
{
    sendMessage(host, RunnerStatus{kind, value});
}

void Supervisor::startStitcher(char **arguments)
{
    const pid_t supervisor = getpid();
    const pid_t stitcher = fork();
    if (stitcher == 0) {
        becomeStitcher(arguments, supervisor);
    }
    if (stitcher == -1) {
        report(RunnerStatus::StartFailed, errno);
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
        arguments[0] = const_cast<char *>(request.stitcher);
        execv(arguments[0], arguments);
    }
    report(RunnerStatus::StartFailed, errno);
    _exit(startFailedStatus);
}

/// Returns Event::None when the stitcher and its descendants have ended, or why they have to be
/// terminated.
Supervisor::Event Supervisor::waitForEnd()
{
    auto end = request.timeoutMs > 0 ? Clock::now() + milliseconds(request.timeoutMs)
                                     : Clock::time_point::max();
    Event late = Event::TimedOut;
    while (processes.reap()) {
        if (processes.status() && late == Event::TimedOut) {
            end = Clock::now() + lingerPeriod;
            late = Event::LeftBehind;
        }
        if (Clock::now() >= end) {
            return late;
        }
        const Event event = nextEvent(end);
        if (event != Event::None) {
            return event;
        }
    }
    return Event::None;
}

/// Waits for a signal or the host. Returns Event::None when a child has ended, or at @p end.
Supervisor::Event Supervisor::nextEvent(Clock::time_point end) const
{
    pollfd sources[] = {{signals, POLLIN, 0}, {host, POLLIN, 0}};
    const timespec time = timeUntil(end);
    if (ppoll(sources, std::size(sources), &time, nullptr) <= 0) {
        return Event::None;
    }
    if (takeSignals()) {
        return Event::Stop;
    }
    if (sources[1].revents == 0) {
        return Event::None;
    }
    const auto command = receiveMessage<HostCommand>(host);
    return command ? Event(*command) : Event::HostGone;
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
        report(RunnerStatus::Signaled, WTERMSIG(*status));
    } else if (status) {
        report(RunnerStatus::Exited, WEXITSTATUS(*status));
    }
    if (end == Event::LeftBehind) {
        report(RunnerStatus::LeftBehind);
    } else if (end == Event::TimedOut) {
        report(RunnerStatus::TimedOut);
    } else if (end != Event::None) {
        report(RunnerStatus::Stopped);
    } else if (status == 0 && *request.stagingDirectory) {
        const int error = syncFiles(request.stagingDirectory);
        if (error != 0) {
            report(RunnerStatus::SyncFailed, error);
        }
    }
    report(RunnerStatus::Finished);
}

/// The stitcher's own status, unless it was terminated: an end by a signal would look like a crash
/// to the plug-in.
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
