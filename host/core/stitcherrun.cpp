// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stitcherrun.h"

#include "host/core/stitcher.h"
#include "host/core/temporaryvariable.h"

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

namespace {

const int settleIntervalMs = 1;
/// The plug-in notices the end of the runner while the event loop runs: at once, unless the host is
/// busy.
const int maxSettleRounds = 2000;
/// The runner gives the stitcher two seconds to end before it kills it.
const int maxWaitMs = 5000;

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

/// Cannot truncate: a longer path names nothing.
void setPath(char (&path)[PATH_MAX], const QString &text)
{
    qstrncpy(path, QFile::encodeName(text).constData(), sizeof path);
}

} // namespace

StitcherRun::StitcherRun(QObject *parent)
    : QObject(parent)
{
}

StitcherRun::~StitcherRun()
{
    notifier.reset();
    send(reported(RunnerStatus::Finished) ? HostCommand::Finish : HostCommand::Stop);
    while (socket >= 0 && waitForMessage(socket)) {
        const auto status = receiveMessage<RunnerStatus>(socket);
        if (!status) {
            break;
        }
        if (status->kind == RunnerStatus::Finished) {
            finish();
        }
    }
    close(socket);
}

QString StitcherRun::start(const StitcherRequest &request, const std::function<void()> &begin)
{
    const QString directory = runnerDirectory();
    if (directory.isEmpty()) {
        return QStringLiteral("The program that supervises the stitcher is missing: the "
                              "installation is incomplete.");
    }
    if (directory.contains(QLatin1Char(':'))) {
        return QStringLiteral("The program that supervises the stitcher is in %1, which cannot be "
                              "part of PATH.")
            .arg(directory);
    }
    RunnerRequest message;
    setPath(message.stitcher, request.stitcher);
    setPath(message.stagingDirectory, request.stagingDirectory);
    setPath(message.workDirectory, request.workDirectory);
    message.timeoutMs = request.timeoutMs;
    message.isKept = request.isKept;
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0
        || !sendMessage(ends[0], message)) {
        const QString problem = qt_error_string(errno);
        close(ends[0]);
        close(ends[1]);
        return QStringLiteral("The stitcher cannot be supervised: %1.").arg(problem);
    }
    socket = ends[0];

    stopIgnoringChildren();
    {
        const QByteArray path = qgetenv("PATH");
        const TemporaryVariable userPath(RunnerProtocol::pathVariable, path);
        const TemporaryVariable searchPath("PATH", QFile::encodeName(directory) + ':' + path);
        const TemporaryVariable temporary("TMPDIR", QFile::encodeName(request.workDirectory));
        const TemporaryVariable runnerSocket(RunnerProtocol::socketVariable,
                                             QByteArray::number(ends[1]));
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
    sendMessage(socket, command);
}

/// Emits signals last: their receivers may delete this object.
void StitcherRun::readStatus()
{
    const auto status = receiveMessage<RunnerStatus>(socket);
    if (!status) {
        disconnectRunner();
        return;
    }
    reports.insert(status->kind, status->value);
    if (status->kind == RunnerStatus::Started) {
        emit started();
    } else if (status->kind == RunnerStatus::Finished) {
        emit stitcherEnded();
    }
}

void StitcherRun::disconnectRunner()
{
    notifier->setEnabled(false);
    close(std::exchange(socket, -1));
    settle();
    if (!reported(RunnerStatus::Finished)) {
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
    // A timer without delay expires after everything that was ready to be read has been delivered.
    // Two are needed, since the first may expire in the current round.
    QTimer::singleShot(0, this, [this] { QTimer::singleShot(0, this, &StitcherRun::ended); });
}

/// Whether the plug-in has waited for the runner; all output has arrived before that.
bool StitcherRun::isReaped() const
{
    siginfo_t info = {};
    const std::optional<int> runner = reported(RunnerStatus::Started);
    return !runner
        || (waitid(P_PID, id_t(*runner), &info, WEXITED | WNOHANG | WNOWAIT) == -1
            && errno == ECHILD);
}

QStringList StitcherRun::commandLine() const
{
    const std::optional<int> runner = reported(RunnerStatus::Started);
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(runner.value_or(0)));
    if (!file.open(QIODevice::ReadOnly)) {
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

std::optional<int> StitcherRun::reported(RunnerStatus::Kind kind) const
{
    const auto report = reports.constFind(kind);
    return report == reports.constEnd() ? std::nullopt : std::optional(*report);
}
