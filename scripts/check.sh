#!/bin/bash
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

# shellcheck disable=SC2317 # the functions are called by their names
set -euo pipefail

cd "$(dirname "$0")/.."
checks="format shell cmake spelling licenses desktop metadata"

usage() {
    cat <<EOF
Usage: scripts/check.sh [CHECK...]

Runs the checks that need no build, all of them or those that are named:
$checks. The tools are installed with apt when they are missing.
.pre-commit-config.yaml has the same list.
EOF
}

# list_files PATTERN...: lists the committed files, each followed by a NUL byte.
list_files() {
    git ls-files -z "$@"
}

check_format() {
    list_files '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
}

check_shell() {
    { git grep -lzE '^#!(/usr)?/bin/(env )?(ba)?sh$'; list_files scripts/dependencies.sh; } \
        | xargs -0 shellcheck -x
}

check_cmake() {
    list_files '*CMakeLists.txt' '*.cmake' '*.cmake.in' | xargs -0 cmake-lint --suppress-decorations
}

check_spelling() {
    list_files ':!tests/fuzz/corpus' ':!*.png' ':!*.svg' | xargs -0 codespell
}

check_licenses() {
    reuse lint --quiet || { reuse lint; return 1; }
}

check_desktop() {
    list_files '*.desktop' | xargs -0 desktop-file-validate
}

check_metadata() {
    metadata=$(mktemp -d)/com.loomwright.Loomwright.metainfo.xml
    sed 's/@PROJECT_VERSION@/1.0.0/' packaging/com.loomwright.Loomwright.metainfo.xml.in > "$metadata"
    appstreamcli validate --no-net "$metadata"
    rm -r "$(dirname "$metadata")"
}

case ${1:-} in
    -h | --help) usage && exit 0 ;;
esac
for name in "$@"; do
    [[ " $checks " == *" $name "* ]] || { echo "check.sh: unknown check $name (try --help)" >&2; exit 2; }
done
# shellcheck source=scripts/dependencies.sh
. scripts/dependencies.sh
# shellcheck disable=SC2086 # a list of packages
install_packages $check_packages

# shellcheck disable=SC2086 # a list of names
[ $# -gt 0 ] || set -- $checks
status=0
for name in "$@"; do
    # A separate process, in which the first failure ends the check.
    "check_$name" > check.log 2>&1 &
    if wait $!; then
        echo "$name: clean"
    else
        echo "$name: failed"
        cat check.log
        status=1
    fi
done
rm -f check.log
exit $status
