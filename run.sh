#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'EOF'
Usage: ./run.sh

Installs missing packages (Debian 12 and 13, with apt), builds the plug-in and
the command-line tool, and builds an image from a sample directory: mapping,
checks, configuration, stitching. It also shows the checks of a faulty
directory. The results are in the directory out/.

The vendor's stitcher is not part of this project; this run uses the mock
stitcher in examples/.

Other commands:
  build/loomwright --help        the command-line tool, for your own files
  examples/make-sample.sh DIR    a sample directory of your own
  ./test.sh                      all tests
  cmake --install build          installs everything
  cmake --preset qt4 -DQT_QMAKE_EXECUTABLE=.../qmake
  cmake --build --preset qt4     the plug-in for the Workbench's own Qt 4
EOF
        exit 0
        ;;
    *)
        echo "run.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")"
. scripts/dependencies.sh
# shellcheck disable=SC2086 # a list of packages
install_packages $build_packages
build_preset release loomwright

heading() {
    printf '\n=== %s\n\n' "$1"
}

out=$PWD/out
rm -rf "$out"
mkdir -p "$out"
examples/make-sample.sh "$out/sample"
examples/make-sample.sh --broken "$out/broken-sample"
stitcher_path=$PWD/examples:$PATH

heading "The files of the sample, mapped to ingredients by name"
build/loomwright --quiet -d "$out/sample" --image "$out/image.bin" ingredients
heading "The checks"
build/loomwright --quiet -d "$out/sample" --image "$out/image.bin" check
heading "The stitcher's configuration"
build/loomwright --quiet -d "$out/sample" --image "$out/image.bin" config

heading "The broken sample: what is wrong with it"
if build/loomwright --quiet -d "$out/broken-sample" --image "$out/image.bin" check; then
    echo "run.sh: the broken sample passed its checks" >&2
    exit 1
fi

heading "The build, with every message of the plug-in, and whether the image is what its manifest records"
PATH=$stitcher_path build/loomwright --verbose -d "$out/sample" build -o "$out/image.bin" \
    --manifest "$out/image.json"
build/loomwright verify "$out/image.json"

heading "The table of contents of $out/image.bin"
sed '/^$/q' "$out/image.bin"
