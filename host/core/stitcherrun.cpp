// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stitcherrun.h"

#include "host/core/stitcher.h"

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

std::string toMessage(const StitcherRequest &request)
{
    RunnerRequest message;
    message.stitcher = QFile::encodeName(request.stitcher).toStdString();
    message.stagingDirectory = QFile::encodeName(request.stagingDirectory).toStdString();
    message.workDirectory = QFile::encodeName(request.workDirectory).toStdString();
    message.timeoutMs = request.timeoutMs;
    message.isKept = request.isKept;
    return message.serialize();
}

} // namespace

StitcherRun::StitcherRun(QObject *parent)
    : QObject(parent)
{
}

StitcherRun::~StitcherRun()
{
    notifier.reset();
    send(hasFinished() ? HostCommand::Finish : HostCommand::Stop);
    RunnerStatus status = {};
    while (socket >= 0 && waitForMessage(socket)
           && recv(socket, &status, sizeof status, 0) == sizeof status) {
        if (status.kind == RunnerStatus::Finished) {
            finish();
        }
    }
    close(socket);
}

QString StitcherRun::start(const StitcherRequest &request, const std::function<void()> &begin)
{
    const QString directory = runnerDirectory();
    if (directory.isEmpty()) {
        return tr("The program that supervises the stitcher is missing: the installation is "
                  "incomplete.");
    }
    const std::string message = toMessage(request);
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0
        || ::send(ends[0], message.data(), message.size(), MSG_DONTWAIT) < 0) {
        const QString problem = qt_error_string(errno);
        close(ends[0]);
        close(ends[1]);
        return tr("The stitcher cannot be supervised: %1.").arg(problem);
    }
    socket = ends[0];
    fcntl(socket, F_SETFL, O_NONBLOCK);

    stopIgnoringChildren();
    {
        EnvironmentChange environment;
        const QByteArray path = qgetenv("PATH");
        environment.set(RunnerProtocol::pathVariable, path);
        environment.set("PATH", QFile::encodeName(directory) + ':' + path);
        environment.set("TMPDIR", QFile::encodeName(request.workDirectory));
        environment.set(RunnerProtocol::socketVariable, QByteArray::number(ends[1]));
        fcntl(ends[1], F_SETFD, 0); // The runner inherits it.
        begin();
    }
    close(ends[1]);

    notifier = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, &StitcherRun::readStatus);
    return {};
}

void StitcherRun::permit()
{
    send(HostCommand::Start);
}

void StitcherRun::stop()
{
    send(HostCommand::Stop);
}

void StitcherRun::finish()
{
    send(HostCommand::Finish);
}

/// Ignores errors: the end of the connection shows that the runner has gone.
void StitcherRun::send(HostCommand command)
{
    ::send(socket, &command, sizeof command, MSG_NOSIGNAL);
}

/// Emits signals last: their receivers may delete this object.
void StitcherRun::readStatus()
{
    RunnerStatus status = {};
    const ssize_t size = recv(socket, &status, sizeof status, 0);
    // A runner that is killed before it reads a command resets the connection once; what it has sent
    // before can still be read.
    if (size < 0 && (errno == EINTR || errno == EAGAIN || errno == ECONNRESET)) {
        return;
    }
    if (size != sizeof status) {
        disconnectRunner();
        return;
    }
    reports.insert(status.kind, status.value);
    if (status.kind == RunnerStatus::Started) {
        emit started();
    } else if (status.kind == RunnerStatus::Finished) {
        emit stitcherEnded();
    }
}

void StitcherRun::disconnectRunner()
{
    notifier->setEnabled(false);
    close(std::exchange(socket, -1));
    afterReadyEvents(&StitcherRun::settle);
    if (!hasFinished()) {
        emit stitcherEnded();
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
    siginfo_t info = {};
    return !hasStarted()
        || (waitid(P_PID, runnerProcess(), &info, WEXITED | WNOHANG | WNOWAIT) == -1
            && errno == ECHILD);
}

id_t StitcherRun::runnerProcess() const
{
    return static_cast<id_t>(reports.value(RunnerStatus::Started));
}

QStringList StitcherRun::commandLine() const
{
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(runnerProcess()));
    if (!hasStarted() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QList<QByteArray> texts = file.readAll().split('\0'); // Each one is followed by a NUL byte.
    texts.removeLast();
    QStringList arguments;
    for (const QByteArray &text : texts.mid(1)) {
        arguments.append(QFile::decodeName(text));
    }
    return arguments;
}

bool StitcherRun::hasStarted() const
{
    return reports.contains(RunnerStatus::Started);
}

int StitcherRun::startError() const
{
    return reports.value(RunnerStatus::StartFailed);
}

int StitcherRun::exitStatus() const
{
    return reports.value(RunnerStatus::Exited, -1);
}

int StitcherRun::signalNumber() const
{
    return reports.value(RunnerStatus::Signaled);
}

bool StitcherRun::hasLeftProcesses() const
{
    return reports.contains(RunnerStatus::LeftBehind);
}

bool StitcherRun::hasTimedOut() const
{
    return reports.contains(RunnerStatus::TimedOut);
}

bool StitcherRun::wasStopped() const
{
    return reports.contains(RunnerStatus::Stopped);
}

int StitcherRun::syncError() const
{
    return reports.value(RunnerStatus::SyncFailed);
}

bool StitcherRun::hasFinished() const
{
    return reports.contains(RunnerStatus::Finished);
}

bool StitcherRun::isRunning() const
{
    return socket >= 0;
}
