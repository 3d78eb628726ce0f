// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// What host and runner say to each other.
///
/// Between them is a socket of the type SOCK_SEQPACKET. The runner sends one RunnerStatus per
/// message, and its exit closes the socket. The host sends nothing: when it shuts its end down or
/// dies, the runner terminates all that it has started and reports as usual.
namespace RunnerProtocol {

/// Environment variable: the absolute path of the stitcher.
constexpr char stitcherVariable[] = "LOOMWRIGHT_STITCHER";
/// Environment variable: the number of the runner's end of the socket.
constexpr char statusVariable[] = "LOOMWRIGHT_STATUS_FD";
/// Environment variable: what PATH was before the runner's directory was put first; not set when
/// there was none.
constexpr char searchPathVariable[] = "LOOMWRIGHT_SEARCH_PATH";

} // namespace RunnerProtocol

/// One message of the runner.
struct RunnerStatus {
    enum Kind : std::int32_t {
        Started,     ///< The runner is there; the value is its process number.
        StartFailed, ///< The stitcher could not be started; the value is the error number.
        Exited,      ///< The stitcher has exited; the value is its status.
        Signaled     ///< A signal has ended the stitcher; the value is its number.
    };

    std::int32_t kind;
    std::int32_t value;
};
