#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT
#
# Creates a platform directory like a firmware drop: the files of an image in subdirectories, under names
# that the plug-in maps, with made-up contents.

set -eu

usage() {
    cat <<'EOF'
Usage: make-sample.sh [--broken] DIRECTORY

Creates DIRECTORY, which must not exist or be empty, with a sample of every
kind of input file.

  --broken  with a wrong size, a missing file, two candidates for one
            ingredient, and a legacy XML data file with an offset error and a
            size error
EOF
}

fail() {
    echo "make-sample.sh: $1" >&2
    exit 2
}

broken=false
directory=
for argument in "$@"; do
    case $argument in
        --broken) broken=true ;;
        -h | --help) usage && exit 0 ;;
        -*) fail "unknown option $argument" ;;
        *) [ -z "$directory" ] || fail "more than one directory given"
           directory=$argument ;;
    esac
done
[ -n "$directory" ] || fail "no directory given (try --help)"
[ ! -e "$directory" ] || rmdir "$directory" 2>/dev/null || fail "$directory is not empty"

# file PATH SIZE: a file of SIZE bytes that says what it is.
file() {
    mkdir -p "$directory/$(dirname "$1")"
    yes "sample of $(basename "$1")" | head -c "$2" > "$directory/$1"
}

# hex_bytes COUNT: COUNT bytes in hexadecimal, in one unbroken run.
hex_bytes() {
    yes 5a | head -n "$1" | tr -d '\n'
}

# node NAME OFFSET SIZE BYTES: one node of a header section; OFFSET in hexadecimal.
node() {
    printf '    <node name="%s" offset="%s" byte_cnt="%s"><data>%s</data></node>\n' \
        "$1" "$2" "$3" "$(hex_bytes "$4")"
}

controller_size=95232
descriptor_offset=14
vector_bytes=32
if $broken; then
    controller_size=95000
    descriptor_offset=18
    vector_bytes=31
fi

file firmware/host/HostFW_1.4.2.bin 102400
file firmware/host/HostFWSupp_1.4.2.bin 32768
file firmware/probe/D1_ProbeSet.bin 31120
file presigned/Controller_Signed.bin "$controller_size"
file presigned/secure/Signed_lookaside_07.bin 4096
file presigned/secure/Signed_anchor_07.bin 2048
file presigned/codec/Signed_D1_CDX_PACK.bin 24576
if $broken; then
    file firmware/incoming/HostFW_1.5.0-rc1.bin 102400
else
    file presigned/secure/Signed_annex_07.bin 8192
fi

mkdir -p "$directory/platform"
{
    printf '<?xml version="1.0" encoding="utf-8"?>\n'
    printf '<platform PLENKITVersion="0.1.0">\n'
    printf '  <header_boot title="Boot">\n'
    node "Magic" 0 4 4
    node "Version" 4 16 16
    node "Descriptor" "$descriptor_offset" 8 8
    printf '  </header_boot>\n'
    printf '  <header_vectors title="Vectors">\n'
    node "Reset vector" 0 32 "$vector_bytes"
    node "Interrupt vectors" 20 64 64
    printf '  </header_vectors>\n'
    printf '  <header_trust title="Trust">\n'
    node "Key identifier" 0 20 20
    printf '    <node name="Signature of trust" offset="14" byte_cnt="4"/>\n'
    printf '  </header_trust>\n'
    printf '  <pins>\n'
    printf '    <pin pinListName="i2s_2_clk" gpioBit="gp_aon_3"/>\n'
    printf '    <pin pinListName="i2s_2_fs" gpioBit="gp_core_4"/>\n'
    printf '  </pins>\n'
    printf '</platform>\n'
} > "$directory/platform/veldmark-d1.xml"
