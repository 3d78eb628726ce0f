#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'EOT'
Usage: tests/memcheck.sh

Runs the end-to-end test, with the loaded library and a real child process, under valgrind's memcheck.
Fails on any error or definite leak that tests/valgrind.supp does not list. Needs a built release preset.
EOT
        exit 0
        ;;
    *)
        echo "memcheck.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")/.."
. scripts/dependencies.sh
# shellcheck disable=SC2086 # a list of packages
install_packages $memcheck_packages
QT_QPA_PLATFORM=offscreen valgrind --quiet --error-exitcode=1 --leak-check=full \
    --errors-for-leak-kinds=definite --show-leak-kinds=definite --suppressions=tests/valgrind.supp \
    build/tests/tst_endtoend
