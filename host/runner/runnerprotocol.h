// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// The protocol between host and runner.
///
/// They are connected by a socket of type SOCK_SEQPACKET. The host sends one RunnerRequest before
/// it lets the plug-in start the runner, then one HostCommand per message. The runner sends one
/// RunnerStatus per message. When the connection ends without HostCommand::Finish, the host has
/// died: the runner terminates everything and removes the directories that the request names.

#include <cerrno>
#include <climits>
#include <cstdint>
#include <optional>
#include <sys/socket.h>

namespace RunnerProtocol {

/// Environment variable: the file descriptor of the runner's end of the socket.
constexpr char socketVariable[] = "LOOMWRIGHT_SOCKET";
/// Environment variable: the value of PATH before the runner's directory was prepended; not set if
/// PATH was not.
constexpr char pathVariable[] = "LOOMWRIGHT_PATH";

} // namespace RunnerProtocol

/// The host's first message: what the runner needs to know.
struct RunnerRequest {
    char stitcher[PATH_MAX] = "";         ///< Absolute path.
    char stagingDirectory[PATH_MAX] = ""; ///< Where the stitcher writes; may be empty.
    char workDirectory[PATH_MAX] = "";    ///< The value of TMPDIR; may be empty.
    std::int32_t timeoutMs = 0;           ///< How long the stitcher may run; 0 for forever.
    bool isKept = false;                  ///< Whether the directories stay when the host dies.
};

/// A later message from the host.
enum class HostCommand : std::int32_t {
    Start, ///< Start the stitcher.
    Stop,  ///< Terminate the stitcher and everything it has started; reports follow as usual.
    Finish ///< The last message: exit, and remove nothing.
};

/// A message from the runner.
struct RunnerStatus {
    enum Kind : std::int32_t {
        Started,     ///< The runner has started; the value is its process ID.
        StartFailed, ///< The stitcher could not be started; the value is the error number.
        Exited,      ///< The stitcher has exited; the value is its status.
        Signaled,    ///< A signal has killed the stitcher; the value is its number.
        LeftBehind,  ///< The stitcher has ended, but left processes running; the value is 0.
        TimedOut,    ///< The stitcher ran too long and was terminated; the value is 0.
        Stopped,     ///< The host or a signal has asked the runner to end; the value is 0.
        SyncFailed,  ///< What the stitcher wrote may not be on disk; the value is the error number.
        /// No process of the stitcher is left; the value is 0. The runner waits for the host's last
        /// message. When the connection ends without this report, the runner was killed.
        Finished
    };

    std::int32_t kind;
    std::int32_t value;
};

/// Sends one message through @p socket. False when that failed.
template <typename Message> bool sendMessage(int socket, const Message &message)
{
    return send(socket, &message, sizeof message, MSG_NOSIGNAL) == sizeof message;
}

/// Waits for one message from @p socket; empty when the other end has gone.
/// @param flags those of recv()
template <typename Message> std::optional<Message> receiveMessage(int socket, int flags = 0)
{
    Message message;
    ssize_t size = 0;
    do {
        size = recv(socket, &message, sizeof message, flags);
        // A process that ends without reading all messages resets the connection once; what it has
        // sent before can still be read.
    } while (size < 0 && (errno == EINTR || errno == ECONNRESET));
    return size == sizeof message ? std::optional(message) : std::nullopt;
}
