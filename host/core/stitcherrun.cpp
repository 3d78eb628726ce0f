// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stitcherrun.h"

#include "host/core/stitcherlocator.h"
#include "host/runner/runnerstatus.h"

#include <QFile>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

const int settleIntervalMs = 1;
/// The plug-in notices the end of the runner while the event loop runs: at once, unless the host is
/// busy.
const int maxSettleRounds = 2000;
/// The runner gives the stitcher two seconds to end before it kills it.
const int maxWaitMs = 5000;

/// Changes environment variables and restores them in the destructor.
class EnvironmentChange
{
public:
    EnvironmentChange() = default;
    ~EnvironmentChange()
    {
        for (auto change = before.rbegin(); change != before.rend(); ++change) {
            put(change->first, change->second);
        }
    }
    EnvironmentChange(const EnvironmentChange &) = delete;
    EnvironmentChange &operator=(const EnvironmentChange &) = delete;

    /// A null @p value unsets the variable.
    void set(const char *name, const QByteArray &value)
    {
        before.emplace_back(name, qgetenv(name));
        put(name, value);
    }

private:
    static void put(const char *name, const QByteArray &value)
    {
        value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

    std::vector<std::pair<const char *, QByteArray>> before;
};

/// A program that starts the host may have set SIGCHLD to be ignored. Then the system would discard
/// exit statuses, and the plug-in would report a crash.
void stopIgnoringChildren()
{
    struct sigaction action = {};
    if (sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

/// False when neither a message nor the end of the connection arrives in time.
bool waitForMessage(int socket)
{
    pollfd waiting = {socket, POLLIN, 0};
    int ready = -1;
    do {
        ready = poll(&waiting, 1, maxWaitMs);
    } while (ready == -1 && errno == EINTR);
    return ready > 0;
}

} // namespace

StitcherRun::StitcherRun(QObject *parent)
    : QObject(parent)
{
}

StitcherRun::~StitcherRun()
{
    if (socket < 0) {
        return;
    }
    notifier.reset();
    stop();
    RunnerStatus status = {};
    while (waitForMessage(socket) && recv(socket, &status, sizeof status, 0) > 0) { }
    close(socket);
}

QString StitcherRun::start(const QString &stitcher, const QString &workDirectory,
                           const std::function<void()> &begin, int lock)
{
    const QString directory = runnerDirectory();
    if (directory.isEmpty()) {
        return tr("The program that supervises the stitcher is missing: the installation is "
                  "incomplete.");
    }
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return tr("The stitcher cannot be supervised: %1.").arg(qt_error_string(errno));
    }
    socket = ends[0];
    fcntl(socket, F_SETFL, O_NONBLOCK);

    stopIgnoringChildren();
    {
        EnvironmentChange environment;
        const QByteArray searchPath = qgetenv("PATH");
        environment.set(RunnerProtocol::searchPathVariable, searchPath);
        environment.set("PATH", QFile::encodeName(directory) + ':' + searchPath);
        environment.set("TMPDIR", QFile::encodeName(workDirectory));
        environment.set(RunnerProtocol::stitcherVariable, QFile::encodeName(stitcher));
        environment.set(RunnerProtocol::statusVariable, QByteArray::number(ends[1]));
        fcntl(ends[1], F_SETFD, 0); // The runner inherits it.
        if (lock >= 0) {
            environment.set(RunnerProtocol::lockVariable, QByteArray::number(lock));
            fcntl(lock, F_SETFD, 0);
        }
        begin();
        if (lock >= 0) {
            fcntl(lock, F_SETFD, FD_CLOEXEC);
        }
    }
    close(ends[1]);

    notifier = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, &StitcherRun::readStatus);
    return {};
}

void StitcherRun::stop()
{
    if (socket >= 0) {
        shutdown(socket, SHUT_WR);
    }
}

void StitcherRun::readStatus()
{
    RunnerStatus status = {};
    const ssize_t size = recv(socket, &status, sizeof status, 0);
    if (size < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (size != sizeof status) {
        notifier->setEnabled(false);
        close(std::exchange(socket, -1));
        afterReadyEvents(&StitcherRun::settle);
        return;
    }
    switch (status.kind) {
    case RunnerStatus::Started:
        runnerProcess = status.value;
        break;
    case RunnerStatus::StartFailed:
        startErrorNumber = status.value;
        break;
    case RunnerStatus::Exited:
        stitcherExitStatus = status.value;
        break;
    case RunnerStatus::Signaled:
        stitcherSignal = status.value;
        break;
    case RunnerStatus::LeftBehind:
        hasLeftover = true;
        break;
    case RunnerStatus::Stopped:
        isStopped = true;
        break;
    case RunnerStatus::Finished:
        isFinished = true;
        break;
    default:
        break;
    }
}

/// The runner has ended; the plug-in still has to relay the rest of the output and notice the end.
void StitcherRun::settle()
{
    if (!isReaped() && ++settleRounds < maxSettleRounds) {
        QTimer::singleShot(settleIntervalMs, this, &StitcherRun::settle);
        return;
    }
    afterReadyEvents(&StitcherRun::ended);
}

/// Calls @p next when everything that was ready to be read has been delivered. A timer without
/// delay expires after that; two are needed, since the first may expire in the current round.
void StitcherRun::afterReadyEvents(void (StitcherRun::*next)())
{
    QTimer::singleShot(0, this, [this, next] { QTimer::singleShot(0, this, next); });
}

/// Whether the plug-in has waited for the runner; all output has arrived before that.
bool StitcherRun::isReaped() const
{
    if (runnerProcess == 0) {
        return true;
    }
    siginfo_t info = {};
    return waitid(P_PID, static_cast<id_t>(runnerProcess), &info, WEXITED | WNOHANG | WNOWAIT) == -1
        && errno == ECHILD;
}

bool StitcherRun::hasStarted() const
{
    return runnerProcess != 0;
}

int StitcherRun::startError() const
{
    return startErrorNumber;
}

int StitcherRun::exitStatus() const
{
    return stitcherExitStatus;
}

int StitcherRun::signalNumber() const
{
    return stitcherSignal;
}

bool StitcherRun::hasLeftProcesses() const
{
    return hasLeftover;
}

bool StitcherRun::wasStopped() const
{
    return isStopped;
}

bool StitcherRun::hasFinished() const
{
    return isFinished;
}

bool StitcherRun::isRunning() const
{
    return socket >= 0;
}
