#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '' | -h | --help)
        cat <<'EOF'
Usage: tests/fuzz/run.sh MINUTES [READER...]

Installs missing packages (Debian 12, with apt), builds the fuzzers with clang
and both sanitizers, replays the committed corpus and fuzzes every READER for
MINUTES (fractions are allowed), all of them in parallel. READER is one of:
definition map configuration legacy gpio xml. Findings are stored in
build-fuzz/findings/; the exit status is 1 when there are any.
EOF
        exit 0
        ;;
esac
seconds=$(awk -v minutes="$1" 'BEGIN { printf "%d", minutes * 60 }')
[ "$seconds" -gt 0 ] || { echo "tests/fuzz/run.sh: MINUTES must be a positive number" >&2; exit 2; }
shift

cd "$(dirname "$0")/../.."
. scripts/dependencies.sh
# shellcheck disable=SC2086 # lists of packages
install_packages $build_packages $fuzz_packages
cmake --preset fuzz > /dev/null
build_preset fuzz

# Qt keeps static data until the end of the process; a leak of a reader would grow with every run.
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1
export UBSAN_OPTIONS=print_stacktrace=1
export LC_ALL=C.UTF-8
readers=${*:-definition map configuration legacy gpio xml}
work=build-fuzz/work
findings=build-fuzz/findings
mkdir -p "$findings"

for reader in $readers; do
    mkdir -p "$work/$reader" "$findings/$reader"
    seeds=tests/fuzz/corpus/$reader
    # The parser reads the documents of all other readers.
    [ "$reader" != xml ] || seeds=$(echo tests/fuzz/corpus/*)
    # shellcheck disable=SC2086 # a list of directories
    "build-fuzz/tests/fuzz/fuzz_$reader" "-artifact_prefix=$findings/$reader/" -max_len=65536 \
        -timeout=20 -rss_limit_mb=3000 "-max_total_time=$seconds" -print_final_stats=1 \
        "$work/$reader" $seeds > "$work/$reader.log" 2>&1 &
    eval "pid_$reader=$!"
done

status=0
for reader in $readers; do
    if eval "wait \$pid_$reader"; then
        executions=$(awk '/number_of_executed_units/ { print $2 }' "$work/$reader.log")
        coverage=$(grep -o 'cov: [0-9]*' "$work/$reader.log" | tail -n 1)
        echo "$reader: clean, $executions executions, $coverage"
    else
        status=1
        echo "$reader: FAILED" >&2
        tail -n 40 "$work/$reader.log" >&2
    fi
done
exit $status
