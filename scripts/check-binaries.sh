#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '' | -h | --help)
        cat <<'EOT'
Usage: scripts/check-binaries.sh BUILD_DIRECTORY [PROGRAM...]

Checks a release build. The plug-in exports the entry points of the plug-in
loader and nothing else, needs no symbol that a system of 2011 lacks, and has
no RUNPATH; the plug-in and every PROGRAM (a path below BUILD_DIRECTORY) are
hardened. Prints what is wrong; the exit status is 1 when anything is.
EOT
        exit 0
        ;;
esac

cd "$1"
shift
library=libunsigned-zorv.so.1
# The plug-in must not need symbols of newer C and C++ libraries, or the Workbench of 2011 could not
# load it.
newest_glibc=2.14
newest_glibcxx=3.4
status=0

report() {
    echo "$1" >&2
    status=1
}

exported=$(nm -D --defined-only "$library" | awk '{ print $3 }' | sort | xargs)
case $exported in
    "qt_plugin_instance qt_plugin_query_metadata" | \
    "qt_plugin_instance qt_plugin_query_verification_data") ;;
    *) report "$library exports more or less than the entry points: $exported" ;;
esac

# newer_symbols PREFIX VERSION: lists the required symbols with a newer version.
newer_symbols() {
    objdump -T "$library" | sed -n "s/.*(\?\b$1_\([0-9.]*\))\? *\([^ ]*\)\$/\1 \2/p" \
        | while read -r version symbol; do
            newest=$(printf '%s\n%s\n' "$2" "$version" | sort -V | tail -n 1)
            [ "$newest" = "$2" ] || echo "$symbol ($1_$version)"
        done
}
newer=$(newer_symbols GLIBC "$newest_glibc"; newer_symbols GLIBCXX "$newest_glibcxx")
[ -z "$newer" ] || report "$library needs symbols newer than GLIBC_$newest_glibc and GLIBCXX_$newest_glibcxx:
$newer"

if readelf -d "$library" | grep -E 'R(UN)?PATH'; then
    report "$library has a RUNPATH"
fi

# Two of the features that hardening-check looks for cannot be detected: the code calls no function
# that has a fortified variant, and Debian's start-up objects lack the control-flow property, so the
# linker drops ours. For these two, check the compiler options instead.
for file in "$library" "$@"; do
    hardening-check --quiet --nofortify --nocfprotection "$file" || report "$file is not hardened"
done
options=-D_FORTIFY_SOURCE=2
[ "$(uname -m)" != x86_64 ] || options="$options -fcf-protection"
for option in $options; do
    unprotected=$(grep '"command"' compile_commands.json | grep -v -e " $option " | sed 's/.* -c //') || true
    [ -z "$unprotected" ] || report "Compiled without $option:
$unprotected"
done

exit $status
