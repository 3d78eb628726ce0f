#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

"""Times two programs in turn, so that other load on the machine affects both.

Usage: pairs.py NAME RUNS COMMAND REFERENCE

Prints {"NAME": RATIO}: the median time of COMMAND divided by that of REFERENCE. No shell is involved.
"""

import json
import shlex
import statistics
import subprocess
import sys
import time


def seconds(command):
    start = time.monotonic()
    status = subprocess.run(
        command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False
    ).returncode
    if status not in (0, 1):  # 1 means that the input has problems, as is intended.
        sys.exit(f"{shlex.join(command)}: exit status {status}")
    return time.monotonic() - start


name, runs, *programs = sys.argv[1:]
commands = [shlex.split(program) for program in programs]
for command in commands:
    seconds(command)  # The disk cache is warm from now on.
times = [[seconds(command) for command in commands] for _ in range(int(runs))]
ours, reference = map(statistics.median, zip(*times))
print(json.dumps({name: ours / reference}))
