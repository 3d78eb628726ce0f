#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '' | -h | --help)
        cat <<'EOT'
Usage: scripts/test-host-example.sh PREFIX

Builds examples/minimal-host with the CMake package that is installed below
PREFIX, and lets it build the sample with the mock stitcher. The pkg-config
file must name the directories below PREFIX too.
EOT
        exit 0
        ;;
esac

prefix=$(realpath "$1")
examples=$(cd "$(dirname "$0")/../examples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# in_prefix VARIABLE FILE: VARIABLE of pkg-config must name a directory below PREFIX with FILE in it.
in_prefix() {
    # pkg-config escapes spaces, for shells.
    directory=$(pkg-config --variable="$1" loomwright | xargs realpath)
    case $directory in
        "$prefix"/*) [ ! -f "$directory/$2" ] || return 0 ;;
    esac
    echo "pkg-config's $1 is $directory, without $2 or not below $prefix" >&2
    exit 1
}
pc_file=$(find "$prefix" -name loomwright.pc)
PKG_CONFIG_PATH=$(dirname "$pc_file")
export PKG_CONFIG_PATH
in_prefix includedir plugin/iloomwrightplugin.h
in_prefix plugindir libunsigned-zorv.so.1

cmake -G Ninja -S "$examples/minimal-host" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" > "$work/log"
cmake --build "$work/build" >> "$work/log" || { cat "$work/log" >&2; exit 1; }

cd "$work"
"$examples/make-sample.sh" sample
export QT_QPA_PLATFORM=offscreen TMPDIR="$work" PATH="$examples:$PATH"
build/minimal-host sample image.bin > log 2>&1 || {
    cat log >&2
    exit 1
}
# The last line comes from the stitcher: its output is complete.
tail -n 2 log
head -n 1 image.bin

"$examples/make-sample.sh" --broken broken
if build/minimal-host broken other.bin > log 2>&1; then
    echo "The broken sample was built" >&2
    exit 1
fi
