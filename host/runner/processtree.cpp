// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/processtree.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

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

std::vector<pid_t> descendantsOf(pid_t process)
{
    std::vector<pid_t> descendants = childrenOf(process);
    for (std::size_t i = 0; i < descendants.size(); ++i) {
        const std::vector<pid_t> children = childrenOf(descendants[i]);
        descendants.insert(descendants.end(), children.begin(), children.end());
    }
    return descendants;
}
