// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/processtree.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

using std::chrono::milliseconds;

/// How long descendants may take to end after SIGTERM.
constexpr milliseconds gracePeriod(2000);
/// Time between two rounds of SIGKILL, unless a child ends earlier. One round may not be enough: a
/// process may start while the list of children is read.
constexpr milliseconds killInterval(50);
/// How long to try. A descendant of another user cannot be killed, and without /proc none is found.
constexpr milliseconds killPeriod(10000);

/// The current children of @p process. One that starts or ends meanwhile may be missing.
std::vector<pid_t> childrenOf(pid_t process)
{
    std::vector<pid_t> children;
    std::error_code error;
    const std::string threads = "/proc/" + std::to_string(process) + "/task";
    for (std::filesystem::directory_iterator thread(threads, error), end; !error && thread != end;
         thread.increment(error)) {
        std::ifstream list(thread->path() / "children");
        for (pid_t child = 0; list >> child;) {
            children.push_back(child);
        }
    }
    return children;
}

/// The children of @p process, their children and so on.
std::vector<pid_t> descendantsOf(pid_t process)
{
    std::vector<pid_t> descendants = childrenOf(process);
    for (std::size_t i = 0; i < descendants.size(); ++i) {
        const std::vector<pid_t> children = childrenOf(descendants[i]);
        descendants.insert(descendants.end(), children.begin(), children.end());
    }
    return descendants;
}

/// Returns when a child has ended, or at @p end.
void waitForChild(Clock::time_point end)
{
    const timespec time = timeUntil(end);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    sigtimedwait(&signals, nullptr, &time);
}

} // namespace

timespec timeUntil(Clock::time_point end)
{
    using std::chrono::nanoseconds;
    using std::chrono::seconds;
    const auto time = std::max(nanoseconds(end - Clock::now()), nanoseconds::zero());
    const auto whole = std::chrono::duration_cast<seconds>(time);
    return {whole.count(), nanoseconds(time - whole).count()};
}

ProcessTree::ProcessTree(pid_t process)
    : child(process)
{
}

bool ProcessTree::reap()
{
    int status = 0;
    pid_t process = 0;
    while ((process = waitpid(-1, &status, WNOHANG)) > 0) {
        if (process == child) {
            childStatus = status;
        }
    }
    return process == 0 || errno != ECHILD;
}

std::optional<int> ProcessTree::status() const
{
    return childStatus;
}

void ProcessTree::terminate()
{
    const auto killTime = Clock::now() + gracePeriod;
    std::set<pid_t> asked;
    while (reap() && Clock::now() < killTime) {
        // Again whenever a child has ended: its own children may have moved while the list was
        // read.
        for (const pid_t process : descendantsOf(getpid())) {
            if (asked.insert(process).second) {
                kill(process, SIGTERM);
            }
        }
        waitForChild(killTime);
    }
    const auto giveUpTime = Clock::now() + killPeriod;
    while (reap() && Clock::now() < giveUpTime) {
        // Only the children: their process IDs cannot have been reused. Grandchildren become
        // children in the next round.
        for (const pid_t process : childrenOf(getpid())) {
            kill(process, SIGKILL);
        }
        waitForChild(Clock::now() + killInterval);
    }
}
