#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT
"""Runs the examples in Markdown files.

Usage: tests/documents.py BUILD_DIRECTORY PREFIX FILE...

Blocks that begin with ```console are sessions: all of a file run in one shell, in a directory of their own
with examples/ in it and BUILD_DIRECTORY and examples/ in PATH. The output of each command must be what
follows its "$" line and the lines with ">" that continue it; "..." stands for any
text, as a line of its own for any lines. Paths below the directory are shown below
/work, and a time in seconds may differ. CMake finds what is installed below PREFIX.

A block that begins with ```LANGUAGE FILE must be the content of that file, without its licence header.
Prints what differs; the exit status is 1 when anything does.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BLOCK = re.compile(r"^```(\w+)[ ]?(\S*)\n(.*?)^```$", re.DOTALL | re.MULTILINE)
TIME = re.compile(r"\b\d+\.\d\d s\b")
SHOWN_DIRECTORY = "/work"
MARK = "\x01"


def commands_in(session):
    """The commands of a session, each with the lines that must follow it."""
    commands = []
    for line in session.splitlines():
        if line.startswith("$ "):
            commands.append((line[2:], []))
        elif line.startswith("> "):
            command, expected = commands.pop()
            commands.append((f"{command}\n{line[2:]}", expected))
        else:
            commands[-1][1].append(line)
    return commands


def run(commands, build, prefix):
    """What each command prints, standard error included."""
    with tempfile.TemporaryDirectory() as directory:
        home = Path(directory).resolve() / "kim"
        home.mkdir()
        (home / "examples").symlink_to(ROOT / "examples")
        # The names of these paths are without spaces, which shells and pkg-config would have to escape.
        (home / "prefix").symlink_to(Path(prefix).resolve())
        script = "".join(f"printf '\\1'\n{command}\n" for command, _ in commands)
        environment = dict(
            os.environ,
            PATH=os.pathsep.join([build, f"{ROOT}/examples", os.environ["PATH"]]),
            CMAKE_PREFIX_PATH=str(home / "prefix"),
            CMAKE_GENERATOR="Ninja",
            QT_QPA_PLATFORM="offscreen",
            LC_ALL="C.UTF-8",
            TMPDIR=directory,
        )
        result = subprocess.run(
            ["bash", "-c", script], cwd=home, env=environment, text=True, check=False,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return result.stdout.replace(str(home), SHOWN_DIRECTORY).split(MARK)[1:]


def matches(expected, actual):
    """Whether the lines are equal, "..." being any lines."""
    pattern = "".join(
        r"(.*\n)*?" if line == "..." else re.escape(line + "\n").replace(r"\.\.\.", ".*")
        for line in expected)
    return re.fullmatch(pattern, "".join(line + "\n" for line in actual)) is not None


def lines_of(text):
    """Lines without what may differ from run to run, and without spaces that nobody sees."""
    return [TIME.sub("0.00 s", line.rstrip()) for line in text.splitlines()]


def without_licence(text):
    """The text after the licence header and the empty line that follows it."""
    lines = text.splitlines(keepends=True)
    while lines and ("SPDX-" in lines[0] or lines[0].startswith("#!") or not lines[0].strip()):
        lines.pop(0)
    return "".join(lines)


def check(file, build, prefix):
    """What is wrong in a Markdown file."""
    problems = []
    commands = []
    for language, source, content in BLOCK.findall(file.read_text(encoding="utf-8")):
        if language == "console":
            commands += commands_in(content)
        elif source and without_licence((ROOT / source).read_text(encoding="utf-8")) != content:
            problems.append(f"{file}: the block is not the content of {source}")
    outputs = run(commands, build, prefix) if commands else []
    for (command, expected), output in zip(commands, outputs):
        if not matches(lines_of("\n".join(expected)), lines_of(output)):
            problems.append(f"{file}: $ {command}\nprints\n{output}")
    if len(outputs) != len(commands):
        problems.append(f"{file}: the session ended early")
    return problems


def main():
    """Checks the files of the command line."""
    build, prefix, *files = sys.argv[1:]
    problems = [problem for file in files for problem in check(Path(file), build, prefix)]
    if problems:
        print("\n".join(problems), file=sys.stderr)
    return 1 if problems else 0


sys.exit(main())
