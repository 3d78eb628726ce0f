// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// The protocol between host and runner.
///
/// They are connected by a socket of type SOCK_SEQPACKET. The runner sends one RunnerStatus per
/// message, and its exit closes the socket. The host sends nothing: when it shuts down its end or
/// dies, the runner terminates everything it has started and reports as usual.
namespace RunnerProtocol {

/// Environment variable: the absolute path of the stitcher.
constexpr char stitcherVariable[] = "LOOMWRIGHT_STITCHER";
/// Environment variable: the file descriptor of the runner's end of the socket.
constexpr char statusVariable[] = "LOOMWRIGHT_STATUS_FD";
/// Environment variable: a file descriptor that holds the lock on the image. The runner keeps it open
/// and does not pass it on, so the image stays locked until the stitcher's last process has ended,
/// even when the host is killed.
constexpr char lockVariable[] = "LOOMWRIGHT_LOCK_FD";
/// Environment variable: the value of PATH before the runner's directory was prepended; not set if
/// PATH was not.
constexpr char searchPathVariable[] = "LOOMWRIGHT_SEARCH_PATH";

} // namespace RunnerProtocol

/// A message from the runner.
struct RunnerStatus {
    enum Kind : std::int32_t {
        Started,     ///< The runner has started; the value is its process ID.
        StartFailed, ///< The stitcher could not be started; the value is the error number.
        Exited,      ///< The stitcher has exited; the value is its status.
        Signaled,    ///< A signal has ended the stitcher; the value is its number.
        LeftBehind,  ///< The stitcher has ended, but left processes running; the value is 0.
        Stopped,     ///< The host or a signal has asked the runner to end; the value is 0.
        Finished     ///< No process is left; the value is 0. Without it, the runner was killed.
    };

    std::int32_t kind;
    std::int32_t value;
};
