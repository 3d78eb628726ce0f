// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// The protocol between host and runner.
///
/// They are connected by a socket of type SOCK_SEQPACKET. The host sends one RunnerRequest before it
/// lets the plug-in start the runner, then one HostCommand per message. The runner sends one
/// RunnerStatus per message. When the connection ends without HostCommand::Finish, the host has died:
/// the runner terminates everything and removes the directories that the request names.

#include <cstdint>
#include <optional>
#include <sstream>
#include <string>

namespace RunnerProtocol {

/// Environment variable: the file descriptor of the runner's end of the socket.
constexpr char socketVariable[] = "LOOMWRIGHT_SOCKET";
/// Environment variable: the value of PATH before the runner's directory was prepended; not set if
/// PATH was not.
constexpr char pathVariable[] = "LOOMWRIGHT_PATH";

} // namespace RunnerProtocol

/// The host's first message: what the runner needs to know.
struct RunnerRequest {
    std::string stitcher;         ///< Absolute path.
    std::string stagingDirectory; ///< Where the stitcher writes; may be empty.
    std::string workDirectory;    ///< The value of TMPDIR; may be empty.
    int timeoutMs = 0;            ///< How long the stitcher may run; 0 for forever.
    bool isKept = false;          ///< Whether the directories stay when the host dies.

    /// The request as a message.
    std::string serialize() const
    {
        std::ostringstream message;
        message << timeoutMs << ' ' << isKept << ' ';
        for (const std::string &text : {stitcher, stagingDirectory, workDirectory}) {
            message << text << '\0';
        }
        return message.str();
    }

    /// Reads a message that serialize() made; empty if it is not valid.
    static std::optional<RunnerRequest> parse(const std::string &message)
    {
        RunnerRequest request;
        std::istringstream stream(message);
        stream >> request.timeoutMs >> request.isKept;
        stream.get();
        std::getline(stream, request.stitcher, '\0');
        std::getline(stream, request.stagingDirectory, '\0');
        std::getline(stream, request.workDirectory, '\0');
        return stream.good() ? std::optional(request) : std::nullopt;
    }
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
