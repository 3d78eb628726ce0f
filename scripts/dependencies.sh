# shellcheck shell=sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT
#
# Sourced by the other scripts.

# The packages of Debian 12 and 13 that each task needs.
# shellcheck disable=SC2034 # used by the scripts that source this one
build_packages="g++ cmake ninja-build qtbase5-dev libkf5widgetsaddons-dev libkf5itemmodels-dev"
# shellcheck disable=SC2034
test_packages="xvfb xauth python3-jsonschema desktop-file-utils pkg-config jq"
# shellcheck disable=SC2034
check_packages="clang-format shellcheck cmake-format codespell reuse desktop-file-utils appstream fish zsh"
# shellcheck disable=SC2034
analysis_packages="clang-tidy cppcheck"
# shellcheck disable=SC2034
docs_packages="doxygen"
# shellcheck disable=SC2034
drawing_packages="graphviz librsvg2-bin"
# shellcheck disable=SC2034
binary_packages="binutils devscripts"
# shellcheck disable=SC2034
package_packages="git build-essential debhelper scdoc lintian man-db pkg-config bash-completion xvfb \
    xauth x11-utils"
# shellcheck disable=SC2034
fuzz_packages="clang libclang-rt-14-dev"
# shellcheck disable=SC2034
picture_packages="fonts-dejavu-core"
# shellcheck disable=SC2034
memcheck_packages="valgrind libc6-dbg"
# shellcheck disable=SC2034
bench_packages="libbenchmark-dev python3 jq libxml2-utils bsdextrautils xvfb xauth"
# shellcheck disable=SC2034
root_packages="debootstrap git"

# install_packages PACKAGE...: installs missing packages and prints their names. It may ask for a
# password, so each script calls it first, with all that the script needs.
install_packages() {
    missing=
    for package in "$@"; do
        if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed$'; then
            missing="$missing $package"
        fi
    done
    [ -n "$missing" ] || return 0

    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    echo "Installing with ${as_root:+$as_root }apt:$missing"
    install_log=$(mktemp)
    # shellcheck disable=SC2086 # a list of packages, and a prefix that may be empty
    if ! { $as_root apt-get update && $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends $missing; } > "$install_log" 2>&1; then
        tail -n 20 "$install_log" >&2
        echo "apt could not install:$missing (all of its output: $install_log)" >&2
        return 1
    fi
    rm -f "$install_log"
}

# build_preset PRESET [TARGET]: configures and builds; prints output only on failure.
build_preset() {
    build_log=$(mktemp)
    if ! { cmake --preset "$1" && cmake --build --preset "$1" ${2:+--target "$2"}; } > "$build_log" 2>&1; then
        grep -v '^\[[0-9]*/[0-9]*\] \(Building\|Linking\|Automatic\)' "$build_log" | tail -n 60 >&2
        echo "The build failed (preset $1; all of its output: $build_log)" >&2
        return 1
    fi
    rm -f "$build_log"
}
