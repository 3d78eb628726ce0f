// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/runnerstatus.h"
#include "host/runner/supervisor.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>

namespace {

constexpr int usageError = 2;

/// Removes the variables meant for the runner alone, and restores the user's search path for the
/// stitcher.
void restoreEnvironment()
{
    if (const char *searchPath = std::getenv(RunnerProtocol::searchPathVariable)) {
        setenv("PATH", std::string(searchPath).c_str(), 1);
    } else {
        unsetenv("PATH");
    }
    unsetenv(RunnerProtocol::searchPathVariable);
    unsetenv(RunnerProtocol::stitcherVariable);
    unsetenv(RunnerProtocol::statusVariable);
    unsetenv(RunnerProtocol::lockVariable);
}

} // namespace

/// Passes all arguments on to the stitcher.
int main(int, char **arguments)
{
    const char *stitcherText = std::getenv(RunnerProtocol::stitcherVariable);
    const char *socketText = std::getenv(RunnerProtocol::statusVariable);
    if (!stitcherText || !socketText) {
        std::fputs("loomwright starts this program in place of the stitcher; it is of no use by "
                   "itself.\n",
                   stderr);
        return usageError;
    }
    const std::string stitcher = stitcherText;
    const int hostSocket = std::atoi(socketText);
    if (const char *lockText = std::getenv(RunnerProtocol::lockVariable)) {
        fcntl(std::atoi(lockText), F_SETFD, FD_CLOEXEC);
    }
    restoreEnvironment();

    Supervisor supervisor(hostSocket);
    endLike(supervisor.run(stitcher.c_str(), arguments));
}
