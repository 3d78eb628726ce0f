// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>
#include <vector>

/// The current children of @p process. One that starts or ends meanwhile may be missing.
std::vector<pid_t> childrenOf(pid_t process);

/// The children of @p process, their children and so on.
std::vector<pid_t> descendantsOf(pid_t process);
