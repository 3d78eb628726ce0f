// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/hostconnection.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>

HostConnection::HostConnection(int runnerSocket)
    : socket(runnerSocket)
{
    fcntl(socket, F_SETFD, FD_CLOEXEC);
}

int HostConnection::descriptor() const
{
    return socket;
}

std::optional<RunnerRequest> HostConnection::takeRequest() const
{
    char first = 0;
    const ssize_t size = recv(socket, &first, sizeof first, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    if (size <= 0) {
        return {};
    }
    std::string message(static_cast<std::size_t>(size), '\0');
    recv(socket, message.data(), message.size(), 0);
    return RunnerRequest::parse(message);
}

std::optional<HostCommand> HostConnection::nextCommand() const
{
    HostCommand command = {};
    ssize_t size = 0;
    do {
        size = recv(socket, &command, sizeof command, 0);
        // A host that ends without reading all reports resets the connection once; what it has sent
        // before can still be read.
    } while (size < 0 && (errno == EINTR || errno == ECONNRESET));
    return size == sizeof command ? std::optional(command) : std::nullopt;
}

void HostConnection::report(RunnerStatus::Kind kind, int value) const
{
    const RunnerStatus status = {kind, value};
    send(socket, &status, sizeof status, MSG_NOSIGNAL);
}
