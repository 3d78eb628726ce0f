// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// As long as it lives, root is refused what any other owner of a file is refused.
class WithoutPrivileges
{
public:
    WithoutPrivileges()
    {
        syscall(SYS_capget, &header, all);
        __user_cap_data_struct few[] = {all[0], all[1]};
        few[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &header, few);
    }
    ~WithoutPrivileges()
    {
        syscall(SYS_capset, &header, all);
    }

private:
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct all[_LINUX_CAPABILITY_U32S_3] = {};
};
