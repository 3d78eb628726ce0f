#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '' | -h | --help)
        cat <<'EOF'
Usage: scripts/test-host-example.sh PREFIX

Builds examples/minimal-host with the CMake package that is installed below PREFIX, and lets it build
the sample with the mock stitcher.
EOF
        exit 0
        ;;
esac

prefix=$(cd "$1" && pwd)
examples=$(cd "$(dirname "$0")/../examples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

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
