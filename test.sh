#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    -h | --help)
        cat <<'EOF'
Usage: ./test.sh [CTEST OPTIONS]

Installs missing packages (Debian 12 and 13, with apt), builds everything and
runs all tests; ./test.sh -R terminal runs those with "terminal" in the name.
EOF
        exit 0
        ;;
esac

cd "$(dirname "$0")"
. scripts/dependencies.sh
# shellcheck disable=SC2086 # a list of packages
install_packages $build_packages $test_packages
build_preset release
ctest --preset release "$@"
