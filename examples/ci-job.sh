#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

image=image.bin
manifest=image.bin.manifest.json

# Errors and the stitcher's output go to the log, the reports to files.
loomwright --json -d firmware --image "$image" check > check.json
loomwright --json -d firmware build -o "$image" --manifest "$manifest" --timeout 600 > build.json
loomwright verify "$manifest"
