#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'EOF'
Usage: ./bench.sh

Installs missing packages (with apt), builds the benchmarks in release and
prints one table: the time that the plug-in takes for a piece of work, as a
ratio to a reference in the same run. It takes some minutes; keep the machine
idle meanwhile. Rows that miss their target are marked.

  ratio     our time divided by the reference's, medians
  target    the highest ratio that is acceptable
  memory    peak memory as a multiple of the input's size, where data is loaded
  slowdown  our time divided by our time for a tenth of the input
EOF
        exit 0
        ;;
    *)
        echo "bench.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")"
. scripts/dependencies.sh
# shellcheck disable=SC2086 # lists of packages
install_packages $build_packages $bench_packages
build_preset bench

LOOMWRIGHT_BENCH_INPUTS=$(mktemp -d)
trap 'rm -rf "$LOOMWRIGHT_BENCH_INPUTS"' EXIT
trap 'exit 1' HUP INT TERM
export LOOMWRIGHT_BENCH_INPUTS LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
bench=build-bench/tests/benchmarks/bench_plugin

# Each work runs in its own process, so that no other work has fragmented its heap. Inside, ours and the
# reference are interleaved, so that other load on the machine affects both.
for work in directory legacy traversal lookup configuration check relay; do
    "$bench" "--benchmark_filter=^$work/" --benchmark_repetitions=5 --benchmark_min_time=0.1 \
        --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
        "--benchmark_out=$LOOMWRIGHT_BENCH_INPUTS/results-$work.json" \
        > "$LOOMWRIGHT_BENCH_INPUTS/log" 2>&1 || { tail -n 20 "$LOOMWRIGHT_BENCH_INPUTS/log" >&2; exit 1; }
done

# The same nine expressions as the plug-in's, on the whole path as find wants them.
files=$LOOMWRIGHT_BENCH_INPUTS/loomwright-directory-100000
expressions=
for expression in 'Signed_lookaside.*.bin' 'Signed_anchor.*.bin' 'Signed_annex.*.bin' \
    'Controller_Signed.bin' 'Signed.*CDX.*PACK.bin' 'HostFW_.*.bin' 'HostFWSupp.*.bin' \
    '.*Probe.*.bin' '.*.xml'; do
    expressions="$expressions${expressions:+ -o} -iregex '.*/$expression'"
done
data_file=$LOOMWRIGHT_BENCH_INPUTS/loomwright-legacy-400000.xml

programs=$LOOMWRIGHT_BENCH_INPUTS/programs.json
pairs=tests/benchmarks/pairs.py
{
    $pairs find 5 "build-bench/loomwright -q -d $files ingredients" "find $files -type f ( $expressions )"
    $pairs xmllint 5 "build-bench/loomwright -q validate $data_file" "xmllint --noout --huge $data_file"
} > "$programs"

# The program itself: its start, and what it adds to the time of a stitcher that takes half a second.
drop=$LOOMWRIGHT_BENCH_INPUTS/drop
image=$LOOMWRIGHT_BENCH_INPUTS/image.bin
config=$LOOMWRIGHT_BENCH_INPUTS/config.txt
examples/make-sample.sh "$drop"
build-bench/loomwright -q -d "$drop" --image "$image" config -o "$config" 2> /dev/null
slower=$LOOMWRIGHT_BENCH_INPUTS/slower-stitcher
printf '#!/bin/sh\nsleep 0.5\nexec "%s" "$@"\n' "$PWD/examples/tamblin-stitcher" > "$slower"
chmod +x "$slower"
{
    $pairs info 50 "build-bench/loomwright info" build-bench/tests/benchmarks/emptyprogram
    $pairs build 50 "build-bench/loomwright -q -d $drop build -o $image --stitcher $slower" \
        "$slower -k $drop/platform/veldmark-d1.xml -c $config -A"
} >> "$programs"

# A window on a virtual display, from the start of the program to the first paint.
HOME=$LOOMWRIGHT_BENCH_INPUTS QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1600x1200x24" \
    $pairs window 50 "build-bench/tests/benchmarks/bench_window ours" \
    "build-bench/tests/benchmarks/bench_window empty" >> "$programs"

legacy_memory=$("$bench" --peak 2> /dev/null)

{
    echo "work|reference|ratio|target|memory|slowdown|"
    jq --raw-output --slurp --slurpfile programs "$programs" --arg memory "$legacy_memory" '
        # In nanoseconds, whatever the unit of the benchmark.
        def nanoseconds: .real_time * {ns: 1, us: 1e3, ms: 1e6, s: 1e9}[.time_unit];
        (map(.benchmarks[]) | map(select(.aggregate_name == "median")
            | {key: (.run_name | sub("/real_time"; "")), value: nanoseconds}) | from_entries) as $time
        | ($programs | add) as $program
        | def two: . * 100 | round / 100 | tostring;
          def mark(ratio; target):
              if target != "-" and ratio > (target | tonumber) then "misses its target" else "" end;
          def row(work; against; ratio; target; memory; slowdown):
              [work, against, (ratio | two), target, memory, slowdown, mark(ratio; target)]
              | join("|");
          def inside(work; against; name; size; target; memory):
              row(work; against; $time["\(name)/ours/\(size)"] / $time["\(name)/reference/\(size)"]; target;
                  memory; $time["\(name)/ours/\(size)"] / $time["\(name)/ours/\(size / 10)"] | two);
          row("fill from 100,000 files, 1% match"; "find -type f, nine -iregex";
              $program.find; "0.5"; "-"; "-"),
          inside("the same"; "a bare QDirIterator"; "directory"; 100000; "5"; "-"),
          inside("validate 40 MB of legacy XML"; "QDomDocument::setContent"; "legacy"; 400000; "1.4";
              $memory),
          row("the same"; "xmllint --noout"; $program.xmllint; "-"; "-"; "-"),
          inside("traverse 1,000 groups of 100"; "QStandardItemModel"; "traversal"; 100000; "1"; "-"),
          inside("look a value up by name"; "QHash and QVariant"; "lookup"; 100000; "5"; "-"),
          inside("load 10,000 lines of configuration"; "QTextStream, split twice"; "configuration";
              10000; "3"; "-"),
          inside("check 100,000 files"; "QFileInfo::exists and size"; "check"; 100000; "1.5"; "-"),
          row("loomwright info"; "an empty Qt program"; $program.info; "1.15"; "-"; "-"),
          row("loomwright build"; "a stitcher of half a second"; $program.build; "1.05";
              "-"; "-"),
          row("first paint of the window"; "an empty QMainWindow"; $program.window; "1.7"; "-";
              "-"),
          inside("relay 200 MB of output"; "cat into a bare QProcess"; "relay"; 200; "1.5"; "-")
    ' "$LOOMWRIGHT_BENCH_INPUTS"/results-*.json
} | column -t -s '|'
